#include "imaging/process/DecoderProcesses.h"

#include <utility>

#include "platform/PrintableText.h"

namespace lumivane {
namespace {

const char* textOf(DecoderTrouble trouble) {
  switch (trouble) {
    case DecoderTrouble::Ended:
      return "ended";
    case DecoderTrouble::TooSlow:
      return "took too long";
    case DecoderTrouble::Nonsense:
      break;
  }
  return "answered nonsense";
}

}  // namespace

DecoderProcesses::DecoderProcesses(ChildPrograms& programs, SharedMemories& memories, const Clock& clock,
                                   Log& log, DecoderLimits limits, Pause pause)
    : programs_(programs),
      clock_(clock),
      log_(log),
      limits_(limits),
      pause_(std::move(pause)),
      pool_(std::make_shared<SharedPixelPool>(memories, SharedPixelPool::Limits{})) {}

// --- On loan ---

DecoderProcesses::Loan::~Loan() {
  if (connection_) processes_->putBack(std::move(connection_));
}

void DecoderProcesses::Loan::giveUp(DecoderTrouble trouble, const std::string& path, const char* doing) {
  processes_->log_.error(std::string("The decoder process ") + textOf(trouble) + " while it " + doing + " " +
                         printable(path));
  connection_.reset();
  processes_->noteDeath(path);
}

std::optional<DecoderProcesses::Loan> DecoderProcesses::take() {
  if (!waitForTurn()) return std::nullopt;
  Connection connection = idleOne();
  if (!connection) connection = startOne();
  if (connection) return Loan(*this, std::move(connection));
  const std::lock_guard lock(mutex_);
  --onLoan_;
  cameBack_.notify_one();
  return std::nullopt;
}

// Counts one more on loan; false when too many were, for too long.
bool DecoderProcesses::waitForTurn() {
  std::unique_lock lock(mutex_);
  if (!cameBack_.wait_for(lock, limits_.picture, [this] { return onLoan_ < limits_.processes; })) {
    lock.unlock();
    log_.error("All decoder processes are busy");
    return false;
  }
  ++onLoan_;
  return true;
}

void DecoderProcesses::putBack(Connection connection) {
  Connection oldest;  // ended after the lock
  const std::lock_guard lock(mutex_);
  troubles_.noteSuccess();
  idle_.push_back(std::move(connection));
  if (idle_.size() > limits_.idle) {
    oldest = std::move(idle_.front());
    idle_.erase(idle_.begin());
  }
  --onLoan_;
  cameBack_.notify_one();
}

void DecoderProcesses::noteDeath(const std::string& path) {
  const MediaTime now = clock_.now();
  const std::lock_guard lock(mutex_);
  troubles_.noteDeath(path, now);
  --onLoan_;
  cameBack_.notify_one();
}

bool DecoderProcesses::isDeadly(const std::string& path) const {
  const std::lock_guard lock(mutex_);
  return troubles_.isDeadly(path);
}

// --- Which one ---

// The one used last, whose memory is warm. One that ended while nobody used it is nobody's fault.
DecoderProcesses::Connection DecoderProcesses::idleOne() {
  while (true) {
    Connection connection;
    {
      const std::lock_guard lock(mutex_);
      if (idle_.empty()) return nullptr;
      connection = std::move(idle_.back());
      idle_.pop_back();
    }
    if (connection->isQuietAndThere()) return connection;
    log_.error("The decoder process ended while it had nothing to do");
  }
}

DecoderProcesses::Connection DecoderProcesses::startOne() {
  Connection connection;
  Nanoseconds wait{0};
  {
    const std::lock_guard lock(mutex_);
    connection = std::move(prepared_);
    wait = troubles_.waitBeforeStart(clock_.now());
  }
  if (!connection) {
    if (wait > limits_.pause) {
      log_.error("No decoder process is started yet: too many failed");
      return nullptr;
    }
    if (wait > Nanoseconds{0}) pause_(wait);
    connection = spawned();
  }
  if (connection && greet(*connection)) return connection;
  connection.reset();
  const MediaTime now = clock_.now();
  const std::lock_guard lock(mutex_);
  troubles_.noteDeath({}, now);
  return nullptr;
}

DecoderProcesses::Connection DecoderProcesses::spawned() {
  if (programs_.ending() >= limits_.ending) {
    log_.error("No decoder process is started: too many wait for their files and cannot end");
    return nullptr;
  }
  Result<std::unique_ptr<ChildProgram>> child = programs_.start();
  if (child) return std::make_unique<DecoderConnection>(std::move(child).value(), pool_, clock_);
  log_.error("The decoder process: " + child.error());
  return nullptr;
}

void DecoderProcesses::prepare() {
  Connection connection = spawned();
  const std::lock_guard lock(mutex_);
  prepared_ = std::move(connection);
}

bool DecoderProcesses::greet(DecoderConnection& connection) {
  const Answered<HelloAnswer> hello = connection.hello(limits_.start);
  if (const auto* trouble = std::get_if<DecoderTrouble>(&hello)) {
    log_.error(std::string("The decoder process ") + textOf(*trouble) + " before it was ready");
    return false;
  }
  tellOnce(std::get<HelloAnswer>(hello));
  return true;
}

void DecoderProcesses::tellOnce(const HelloAnswer& hello) {
  if (hello.filesReadOnly && hello.systemCallsFiltered) return;
  {
    const std::lock_guard lock(mutex_);
    if (std::exchange(toldAboutDoors_, true)) return;
  }
  const char* const missing = hello.filesReadOnly         ? "a filter of system calls"
                              : hello.systemCallsFiltered ? "Landlock"
                                                          : "Landlock and a filter of system calls";
  log_.information(std::string("The decoder process does without ") + missing +
                   ", which this system does not have");
}

}  // namespace lumivane
