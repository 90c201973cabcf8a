#include "platform/linux/SpawnedProgram.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <csignal>

#include <algorithm>
#include <array>
#include <cerrno>
#include <mutex>
#include <system_error>

#include "platform/PrintableText.h"
#include "platform/linux/MessageSocket.h"
#include "platform/linux/ProcessUse.h"
#include "platform/linux/SealedMemory.h"

namespace lumivane {
namespace {

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

// The files that the program begins with.
class SpawnFiles {
 public:
  explicit SpawnFiles(int socket) {
    posix_spawn_file_actions_init(&actions_);
    posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    // Libraries write there what they think of a file, without measure.
    posix_spawn_file_actions_addopen(&actions_, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions_, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_adddup2(&actions_, socket, kChildSocket);
    posix_spawn_file_actions_addclosefrom_np(&actions_, kChildSocket + 1);
  }
  ~SpawnFiles() { posix_spawn_file_actions_destroy(&actions_); }
  SpawnFiles(const SpawnFiles&) = delete;
  SpawnFiles& operator=(const SpawnFiles&) = delete;
  [[nodiscard]] const posix_spawn_file_actions_t* get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_{};
};

// Signals as they are by default, none held back; a process group of its own, so that Ctrl-C reaches us alone.
class SpawnAttributes {
 public:
  SpawnAttributes() {
    posix_spawnattr_init(&attributes_);
    sigset_t all;
    sigset_t none;
    sigfillset(&all);
    sigemptyset(&none);
    posix_spawnattr_setsigdefault(&attributes_, &all);
    posix_spawnattr_setsigmask(&attributes_, &none);
    posix_spawnattr_setpgroup(&attributes_, 0);
    posix_spawnattr_setflags(&attributes_,
                             POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETPGROUP);
  }
  ~SpawnAttributes() { posix_spawnattr_destroy(&attributes_); }
  SpawnAttributes(const SpawnAttributes&) = delete;
  SpawnAttributes& operator=(const SpawnAttributes&) = delete;
  [[nodiscard]] const posix_spawnattr_t* get() const { return &attributes_; }

 private:
  posix_spawnattr_t attributes_{};
};

// A file that is open with us already, by the name that the child can use when all of ours are closed to it.
std::string openFile(const FileDescriptor& file) {
  return "/proc/" + std::to_string(::getpid()) + "/fd/" + std::to_string(file.get());
}

// By its name where there is no /proc, or was no file.
int spawnFileOrName(pid_t* process, const FileDescriptor& file, const std::string& name,
                    const SpawnFiles& files, char* const* words, char* const* variables) {
  const SpawnAttributes attributes;
  if (file.isOpen() &&
      posix_spawn(process, openFile(file).c_str(), files.get(), attributes.get(), words, variables) == 0)
    return 0;
  return posix_spawn(process, name.c_str(), files.get(), attributes.get(), words, variables);
}

Result<pid_t> spawn(const ProgramToSpawn& program, const FileDescriptor& file, int socket) {
  std::vector<std::string> words{program.path};
  words.insert(words.end(), program.arguments.begin(), program.arguments.end());
  std::vector<std::string> variables = program.environment;
  pid_t process = 0;
  const int error = spawnFileOrName(&process, file, program.path, SpawnFiles(socket),
                                    pointersTo(words).data(), pointersTo(variables).data());
  if (error == 0) return process;
  return Error{printable(program.path) +
               " cannot be started: " + std::error_code(error, std::system_category()).message()};
}

}  // namespace

// The processes that were started and not collected yet.
class SpawnedPrograms::Processes {
 public:
  void started(pid_t process) {
    const std::lock_guard lock(mutex_);
    atWork_.push_back(process);
  }

  void end(pid_t process) {
    const std::lock_guard lock(mutex_);
    largest_ = std::max(largest_, peakMemoryBytesOf(process));
    ::kill(process, SIGKILL);
    std::erase(atWork_, process);
    ending_.push_back(process);
    collectLocked();
  }

  std::size_t collect() {
    const std::lock_guard lock(mutex_);
    collectLocked();
    return ending_.size();
  }

  std::size_t peakMemoryBytes() const {
    const std::lock_guard lock(mutex_);
    std::size_t largest = largest_;
    for (const pid_t process : atWork_) largest = std::max(largest, peakMemoryBytesOf(process));
    return largest;
  }

 private:
  void collectLocked() {
    std::erase_if(ending_, [](pid_t process) { return ::waitpid(process, nullptr, WNOHANG) != 0; });
  }

  mutable std::mutex mutex_;

  // Guarded by mutex_
  std::vector<pid_t> atWork_;
  std::vector<pid_t> ending_;  // were told to end
  std::size_t largest_ = 0;    // peak memory of those that were told to end, in bytes
};

class SpawnedPrograms::Child final : public ChildProgram {
 public:
  Child(pid_t process, FileDescriptor socket, std::shared_ptr<Processes> processes)
      : process_(process), socket_(std::move(socket)), processes_(std::move(processes)) {
    processes_->started(process_);
  }
  ~Child() override { processes_->end(process_); }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  bool send(std::span<const std::byte> message, const SharedMemory* lent) override {
    const auto* memory = dynamic_cast<const SealedMemory*>(lent);
    if (lent != nullptr && memory == nullptr) return false;
    return sendMessage(socket_.get(), message, memory != nullptr ? memory->descriptor() : -1, Waiting::Never);
  }

  MessageArrival receive(std::vector<std::byte>& message, Nanoseconds patience) override {
    return receiver_.receive(message, patience);
  }

 private:
  const pid_t process_;
  const FileDescriptor socket_;
  MessageReceiver receiver_{socket_.get(), MessageReceiver::Descriptors::Refused};
  const std::shared_ptr<Processes> processes_;
};

SpawnedPrograms::SpawnedPrograms(ProgramToSpawn program)
    : program_(std::move(program)),
      file_(::open(program_.path.c_str(), O_PATH | O_CLOEXEC)),
      processes_(std::make_shared<Processes>()) {}
SpawnedPrograms::~SpawnedPrograms() = default;

Result<std::unique_ptr<ChildProgram>> SpawnedPrograms::start() {
  (void)processes_->collect();
  std::array<int, 2> ends{-1, -1};
  if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0)
    return Error{"no socket: " + std::error_code(errno, std::system_category()).message()};
  FileDescriptor ours(ends[0]);
  const FileDescriptor theirs(ends[1]);
  const Result<pid_t> process = spawn(program_, file_, theirs.get());
  if (!process) return Error{process.error()};
  return std::unique_ptr<ChildProgram>(new Child(process.value(), std::move(ours), processes_));
}

std::size_t SpawnedPrograms::ending() {
  return processes_->collect();
}

std::size_t SpawnedPrograms::peakMemoryBytes() const {
  return processes_->peakMemoryBytes();
}

}  // namespace lumivane
