// Closes the doors as the decoder does, tries them, and says which ones gave way.
//
//   sandbox_probe files|calls|both FOLDER
#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <csignal>
#include <cstdio>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <string_view>
#include <thread>

#include "platform/linux/FileDescriptor.h"
#include "tools/decoder/Sandbox.h"

namespace {

using lumivane::FileDescriptor;

constexpr int kUnknownToThisSystem = 77;

void say(const std::string& text) {
  const std::string line = text + "\n";
  if (::write(STDOUT_FILENO, line.data(), line.size()) < 0) std::_Exit(1);
}

void expectClosed(const char* name, bool gaveWay) {
  say(std::string(gaveWay ? "open " : "closed ") + name);
}

void tryFiles(const std::string& folder) {
  const std::string there = folder + "/there";
  expectClosed("write", FileDescriptor(::open(there.c_str(), O_WRONLY)).isOpen());
  expectClosed("update", FileDescriptor(::open(there.c_str(), O_RDWR)).isOpen());
  expectClosed("create",
               FileDescriptor(::open((folder + "/new").c_str(), O_CREAT | O_WRONLY, 0600)).isOpen());
  expectClosed("create unread",
               FileDescriptor(::open((folder + "/new").c_str(), O_CREAT | O_RDONLY, 0600)).isOpen());
  expectClosed("truncate", FileDescriptor(::open(there.c_str(), O_RDONLY | O_TRUNC)).isOpen());
  expectClosed("temporary", FileDescriptor(::open(folder.c_str(), O_TMPFILE | O_RDWR, 0600)).isOpen());
  expectClosed("remove", ::unlink(there.c_str()) == 0);
  expectClosed("rename", ::rename(there.c_str(), (folder + "/other").c_str()) == 0);
  expectClosed("folder", ::mkdir((folder + "/folder").c_str(), 0700) == 0);
  expectClosed("link", ::symlink("a", (folder + "/link").c_str()) == 0);
  expectClosed("mode", ::chmod(there.c_str(), 0777) == 0);
  expectClosed("length", ::truncate(there.c_str(), 0) == 0);
}

void tryCalls() {
  expectClosed("network", FileDescriptor(::socket(AF_INET, SOCK_STREAM, 0)).isOpen());
  expectClosed("local socket", FileDescriptor(::socket(AF_UNIX, SOCK_STREAM, 0)).isOpen());
  pid_t child = 0;
  char program[] = "/bin/true";
  char* arguments[] = {program, nullptr};
  char* none[] = {nullptr};
  expectClosed("spawn", ::posix_spawn(&child, program, nullptr, nullptr, arguments, none) == 0);
  const pid_t forked = ::fork();
  if (forked == 0) std::_Exit(0);
  expectClosed("fork", forked > 0);
  ::execve(program, arguments, none);
  expectClosed("exec", false);  // or we would not be here
  expectClosed("signals about files", ::fcntl(STDIN_FILENO, F_SETOWN, ::getppid()) == 0);
  expectClosed("kill", ::kill(::getppid(), 0) == 0);
  void* const code = ::mmap(nullptr, 4096, PROT_READ | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  expectClosed("code", code != MAP_FAILED);
  expectClosed("rights", ::prctl(PR_SET_KEEPCAPS, 1, 0, 0, 0) == 0);
  expectClosed("trace", ::syscall(SYS_process_vm_readv, ::getppid(), nullptr, 0, nullptr, 0, 0) == 0);
}

void tryMemory() {
  void* const large = ::mmap(nullptr, std::size_t{8} << 30, PROT_READ | PROT_WRITE,
                             MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  expectClosed("memory", large != MAP_FAILED);
}

// What must go on working.
void tryReading(const std::string& folder) {
  char byte = 0;
  const FileDescriptor file(::open((folder + "/there").c_str(), O_RDONLY | O_CLOEXEC));
  const FileDescriptor again(
      ::open(("/proc/self/fd/" + std::to_string(file.get())).c_str(), O_RDONLY | O_CLOEXEC));
  say(::pread(again.get(), &byte, 1, 0) == 1 && byte == 'x' ? "reads" : "does not read");
  int counted = 0;
  std::thread([&counted] { ++counted; }).join();
  say(counted == 1 ? "has threads" : "has no threads");
}

}  // namespace

int main(int count, char* words[]) {
  if (count != 3) return 2;
  const std::string_view which(words[1]);
  const std::string folder(words[2]);
  const bool files = which != "calls";
  const bool calls = which != "files";
  if (files && !lumivane::makeFilesReadOnly()) return kUnknownToThisSystem;
  if (calls) lumivane::limitResources(std::uint64_t{4} << 30, 0);
  if (calls && !lumivane::filterSystemCalls()) return kUnknownToThisSystem;
  tryReading(folder);
  tryFiles(folder);
  if (calls) tryCalls();
  if (calls) tryMemory();
  std::_Exit(0);
}
