// Sleep of the machine as login1 announces it, dark screens as the desktop's screen saver announces them.
//
// Threads: as in SleepNotes.h.
// Owns:    its place among the listeners of both buses, and the queue on which it takes it: a bus may be slow to open.
// Errors:  as in SleepNotes.h.
#pragma once

#include <QObject>
#include <memory>

#include "platform/SerialQueue.h"
#include "platform/SleepNotes.h"

namespace lumivane {

// Not final, and with a base class of Qt's in front: Qt's signals reach slots only so.
class DBusSleepNotes : public QObject, public SleepNotes {
  Q_OBJECT

 public:
  explicit DBusSleepNotes(SerialQueues& queues);
  void observe(std::function<void()> onSleep) override;

 private slots:
  void prepareForSleep(bool begins);
  void activeChanged(bool active);

 private:
  void listen();

  std::function<void()> onSleep_;
  std::unique_ptr<SerialQueue> queue_;  // last: its job ends before the rest goes
};

}  // namespace lumivane
