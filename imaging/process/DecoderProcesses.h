// The decoder processes of a run: starts them when they are needed, keeps them, and lends each to one job at a time.
//
// A process that ends, hangs or answers nonsense is given up; the next one is started in its place, ever more slowly when
// one after the other fails.
//
// Threads: any; each job has a process of its own.
// Owns:    the processes that nobody uses just now. Jobs must not outlive it.
// Units:   limits in media time.
// Errors:  no process, with a line in the log that says why.
#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "imaging/process/DecoderConnection.h"
#include "imaging/process/DecoderTroubles.h"
#include "platform/Log.h"

namespace lumivane {

struct DecoderLimits {
  Nanoseconds start = std::chrono::seconds(20);    // until a process is ready
  Nanoseconds picture = std::chrono::seconds(20);  // for all that is asked about one picture
  std::size_t processes = 6;                       // at the same time
  std::size_t idle = 2;                            // that are kept while nobody uses them
  std::size_t ending = 8;  // that were told to end and do not, before no more are started
  Nanoseconds pause = std::chrono::seconds(1);  // the longest time that a job waits for its turn to start one
};

class DecoderProcesses {
 public:
  using Pause = std::function<void(Nanoseconds)>;

  DecoderProcesses(ChildPrograms& programs, SharedMemories& memories, const Clock& clock, Log& log,
                   DecoderLimits limits, Pause pause);

  // A process on loan to a job. It goes back when the loan ends, unless the job has trouble with it.
  class Loan {
   public:
    Loan(DecoderProcesses& processes, std::unique_ptr<DecoderConnection> connection)
        : processes_(&processes), connection_(std::move(connection)) {}
    Loan(Loan&& other) noexcept = default;
    Loan& operator=(Loan&& other) = delete;
    ~Loan();
    [[nodiscard]] DecoderConnection* operator->() { return connection_.get(); }
    // Ends the process. `path` is what it worked on, `doing` what it did, for the log.
    void giveUp(DecoderTrouble trouble, const std::string& path, const char* doing);

   private:
    DecoderProcesses* processes_;
    std::unique_ptr<DecoderConnection> connection_;
  };

  // Nothing when no process can be had.
  [[nodiscard]] std::optional<Loan> take();
  // Starts the first process without waiting for it.
  void prepare();

  [[nodiscard]] bool isDeadly(const std::string& path) const;
  [[nodiscard]] const DecoderLimits& limits() const { return limits_; }
  [[nodiscard]] Log& log() { return log_; }
  [[nodiscard]] const Clock& clock() const { return clock_; }

 private:
  using Connection = std::unique_ptr<DecoderConnection>;

  [[nodiscard]] Connection idleOne();
  [[nodiscard]] bool waitForTurn();
  [[nodiscard]] Connection startOne();
  [[nodiscard]] Connection spawned();
  [[nodiscard]] bool greet(DecoderConnection& connection);
  void tellOnce(const HelloAnswer& hello);
  void noteDeath(const std::string& path);
  void putBack(Connection connection);

  // Constant after construction
  ChildPrograms& programs_;
  const Clock& clock_;
  Log& log_;
  const DecoderLimits limits_;
  const Pause pause_;
  const std::shared_ptr<SharedPixelPool> pool_;

  mutable std::mutex mutex_;
  std::condition_variable cameBack_;

  // Guarded by mutex_
  std::vector<Connection> idle_;
  Connection prepared_;  // started, not yet heard of
  std::size_t onLoan_ = 0;
  DecoderTroubles troubles_;
  bool toldAboutDoors_ = false;
};

}  // namespace lumivane
