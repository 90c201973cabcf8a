#include "platform/linux/DBusSleepNotes.h"

#include <QDBusConnection>
#include <utility>

namespace lumivane {

DBusSleepNotes::DBusSleepNotes(SerialQueues& queues) : queue_(queues.make("LumivaneSleepNotes")) {}

void DBusSleepNotes::observe(std::function<void()> onSleep) {
  onSleep_ = std::move(onSleep);
  queue_->async([this] { listen(); });
}

// On the queue: Qt asks the bus who the sender is, and waits for the answer.
void DBusSleepNotes::listen() {
  QDBusConnection::systemBus().connect("org.freedesktop.login1", "/org/freedesktop/login1",
                                       "org.freedesktop.login1.Manager", "PrepareForSleep", this,
                                       SLOT(prepareForSleep(bool)));
  QDBusConnection session = QDBusConnection::sessionBus();
  for (const char* path : {"/org/freedesktop/ScreenSaver", "/ScreenSaver"}) {
    session.connect("org.freedesktop.ScreenSaver", path, "org.freedesktop.ScreenSaver", "ActiveChanged", this,
                    SLOT(activeChanged(bool)));
  }
  session.connect("org.gnome.ScreenSaver", "/org/gnome/ScreenSaver", "org.gnome.ScreenSaver", "ActiveChanged",
                  this, SLOT(activeChanged(bool)));
}

void DBusSleepNotes::prepareForSleep(bool begins) {
  if (begins && onSleep_) onSleep_();
}

void DBusSleepNotes::activeChanged(bool active) {
  if (active && onSleep_) onSleep_();
}

}  // namespace lumivane
