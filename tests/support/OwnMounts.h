// Work in a process that has a file system of its own mounted: gone with the process, unseen by everybody else.
#pragma once

#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <fstream>
#include <functional>
#include <optional>
#include <string>

#include "platform/linux/FileDescriptor.h"

namespace lumivane {

// As the administrator, or else as an ordinary user where the system lets users have name spaces.
[[nodiscard]] inline bool enterOwnMounts() {
  const uid_t user = getuid();
  const gid_t group = getgid();
  if (unshare(CLONE_NEWNS) != 0) {
    if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return false;
    std::ofstream("/proc/self/uid_map") << user << ' ' << user << " 1";
    std::ofstream("/proc/self/setgroups") << "deny";
    std::ofstream("/proc/self/gid_map") << group << ' ' << group << " 1";
  }
  return mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

// What the work answers, run in a process of its own in which an empty file system of this type is mounted on the
// folder. Absent where the system does not allow that. Requires: no threads.
[[nodiscard]] inline std::optional<std::string> withMounted(const char* type, const std::string& folder,
                                                            const std::function<std::string()>& work) {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) return std::nullopt;
  const FileDescriptor answerEnd(ends[0]);
  FileDescriptor workEnd(ends[1]);
  const pid_t child = fork();
  if (child == 0) {
    alarm(60);
    if (!enterOwnMounts() || mount("disk", folder.c_str(), type, 0, nullptr) != 0) _exit(1);
    const std::string answer = work();
    _exit(write(workEnd.get(), answer.data(), answer.size()) == static_cast<ssize_t>(answer.size()) ? 0 : 1);
  }
  workEnd = FileDescriptor();
  std::string answer;
  std::array<char, 4096> chunk{};
  for (ssize_t got = 0; (got = read(answerEnd.get(), chunk.data(), chunk.size())) > 0;) {
    answer.append(chunk.data(), static_cast<std::size_t>(got));
  }
  int status = 0;
  waitpid(child, &status, 0);
  if (WIFEXITED(status) && WEXITSTATUS(status) == 1) return std::nullopt;
  return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? answer
                                                       : "the process failed: " + std::to_string(status);
}

}  // namespace lumivane
