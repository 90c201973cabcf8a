// Runs a program as a user would and keeps what it answers.
#pragma once

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace lumivane {

// A folder that is removed again with all it holds.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "lumivane-test-XXXXXX").string();
    path_ = ::mkdtemp(pattern.data());
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

[[nodiscard]] inline std::string contentOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream content;
  content << file.rdbuf();
  return content.str();
}

struct ProgramAnswer {
  int status = -1;  // the exit status; -1 = ended by a signal
  std::string out;
  std::string err;
};

// The environment is exactly the given one. A program that hangs is ended by its own alarm after a minute.
[[nodiscard]] inline ProgramAnswer runProgram(const std::vector<std::string>& words,
                                              const std::map<std::string, std::string>& environment,
                                              const std::filesystem::path& workingFolder,
                                              const std::filesystem::path& scratch) {
  const std::string out = scratch / "out";
  const std::string err = scratch / "err";
  std::vector<std::string> entries;
  for (const auto& [name, value] : environment) entries.push_back(name + "=" + value);
  std::vector<char*> arguments;
  std::vector<char*> variables;
  for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  for (const std::string& entry : entries) variables.push_back(const_cast<char*>(entry.c_str()));
  arguments.push_back(nullptr);
  variables.push_back(nullptr);
  const pid_t child = ::fork();
  if (child == 0) {
    ::alarm(60);
    const int outFile = ::open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    const int errFile = ::open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    const int inFile = ::open("/dev/null", O_RDONLY);
    if (::chdir(workingFolder.c_str()) != 0 || ::dup2(inFile, 0) < 0 || ::dup2(outFile, 1) < 0 ||
        ::dup2(errFile, 2) < 0) {
      ::_exit(126);
    }
    ::execve(arguments[0], arguments.data(), variables.data());
    ::_exit(127);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, contentOf(out), contentOf(err)};
}

}  // namespace lumivane
