#include "platform/linux/QtApplication.h"

#include <QGuiApplication>
#include <QPointer>
#include <QWindow>

namespace lumivane {

// By way of the loop: the caller may be in the middle of a window's work. Not QCoreApplication::quit(), which gives up
// when a dialog does not want to close.
void QtApplication::terminate() {
  QMetaObject::invokeMethod(
      QCoreApplication::instance(),
      [] {
        const QWindowList all = QGuiApplication::topLevelWindows();
        // The close of one may be the end of others.
        const QList<QPointer<QWindow>> windows(all.begin(), all.end());
        for (const QPointer<QWindow>& window : windows) {
          if (window) window->close();
        }
        QCoreApplication::exit();
      },
      Qt::QueuedConnection);
}

}  // namespace lumivane
