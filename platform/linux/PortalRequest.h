// A dialog of the desktop portal that is open: waits for its answer, and can take it back.
// Described by the desktop portal's interface org.freedesktop.portal.Request.
//
// Threads: main only.
// Owns:    the watch over the answer. Ending it takes a dialog that is still open off the screen.
// Errors:  a portal that goes, or whose answer makes no sense, answers with Dismissed.
#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QVariantMap>
#include <functional>

namespace lumivane {

inline constexpr const char* kPortal = "org.freedesktop.portal.Desktop";
inline constexpr const char* kPortalPath = "/org/freedesktop/portal/desktop";

class PortalRequest final : public QObject {
  Q_OBJECT

 public:
  static constexpr uint kSuccess = 0;
  static constexpr uint kDismissed = 1;
  using Answered = std::function<void(uint response, const QVariantMap& results)>;

  // Waits from now on: to be made before the portal is asked, lest the answer be missed. `token` must be a word of
  // its own for each request of the connection.
  PortalRequest(const QDBusConnection& bus, const QString& token, Answered answered);
  ~PortalRequest() override;

  // Where the portal says the request is; old ones choose the place themselves.
  void isAt(const QString& path);

 private Q_SLOTS:
  void responded(uint response, const QVariantMap& results);

 private:
  void listen();

  QDBusConnection bus_;
  QString path_;
  Answered answered_;  // empty: it has been answered
  QDBusServiceWatcher portal_;
};

}  // namespace lumivane
