#include "platform/linux/DesktopWorkspace.h"

#include <QDesktopServices>
#include <QUrl>

namespace lumivane {

bool DesktopWorkspace::openUrl(const std::string& url) {
  const QUrl parsed(QString::fromStdString(url), QUrl::StrictMode);
  return parsed.isValid() && !parsed.isRelative() && QDesktopServices::openUrl(parsed);
}

}  // namespace lumivane
