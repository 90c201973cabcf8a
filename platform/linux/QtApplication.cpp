#include "platform/linux/QtApplication.h"

#include <QGuiApplication>
#include <QWindow>

namespace lumivane {

// By way of the loop: the caller may be in the middle of a window's work. Not QCoreApplication::quit(), which gives up
// when a dialog does not want to close.
void QtApplication::terminate() {
  QMetaObject::invokeMethod(
      QCoreApplication::instance(),
      [] {
        for (QWindow* window : QGuiApplication::topLevelWindows()) window->close();
        QCoreApplication::exit();
      },
      Qt::QueuedConnection);
}

}  // namespace lumivane
