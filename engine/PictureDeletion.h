// Moves pictures to the trash on a queue of its own: a disk that does not answer must not hold up the show.
//
// Threads: main only; the files are touched on the queue, and the outcome is told on the main thread.
// Owns:    the queue, from its first use on. Destruction waits for the file that is being moved.
// Errors:  in the outcome, as lines for the log; the file is then still where it was.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>

#include "platform/Files.h"
#include "platform/MainLoop.h"
#include "platform/SerialQueue.h"
#include "platform/Trash.h"

namespace lumivane {

// Empty: the file is in the trash.
struct DeletionFailure {
  std::string reason;      // why it was not moved
  std::string fileAccess;  // what opening the file says, as fileAccessText() has it
};
using DeletionOutcome = std::optional<DeletionFailure>;

// Moves the file, here and now.
[[nodiscard]] DeletionOutcome deleteFile(const Files& files, Trash& trash, const std::string& path);

// What trying to open the file for reading and writing says, as a line for the log.
[[nodiscard]] std::string fileAccessText(const Files& files, const std::string& path);

class PictureDeletion {
 public:
  using Completion = std::function<void(const DeletionOutcome& outcome)>;

  PictureDeletion(SerialQueues& queues, MainLoop& mainLoop, const Files& files, Trash& trash);
  PictureDeletion(const PictureDeletion&) = delete;
  PictureDeletion& operator=(const PictureDeletion&) = delete;
  ~PictureDeletion() = default;

  // A file that is on its way already is left to that.
  void begin(const std::string& path, Completion completion);

 private:
  SerialQueues& queues_;
  MainLoop& mainLoop_;
  const Files& files_;
  Trash& trash_;
  std::shared_ptr<std::set<std::string>> underWay_ = std::make_shared<std::set<std::string>>();
  std::unique_ptr<SerialQueue> queue_;  // last: its job ends before the rest goes
};

}  // namespace lumivane
