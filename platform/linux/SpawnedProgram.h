// Starts a program with a socket to it and nothing else of ours: no open files, no input, no output. It is the program
// that was there in the beginning: what an update puts in its place while we run may speak otherwise.
//
// Threads: as in ChildProgram.h.
// Owns:    as in ChildProgram.h. Processes that were told to end are collected whenever there is an occasion; with the
//          last occasion past, the system's first process inherits them.
// Errors:  as in ChildProgram.h.
#pragma once

#include <sys/types.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/ChildProgram.h"
#include "platform/linux/FileDescriptor.h"

namespace lumivane {

// Where the program finds its end of the line.
inline constexpr int kChildSocket = 3;

struct ProgramToSpawn {
  std::string path;
  std::vector<std::string> arguments;    // without the program's own name
  std::vector<std::string> environment;  // "NAME=value", the whole of it
};

class SpawnedPrograms final : public ChildPrograms {
 public:
  explicit SpawnedPrograms(ProgramToSpawn program);
  ~SpawnedPrograms() override;
  [[nodiscard]] Result<std::unique_ptr<ChildProgram>> start() override;
  [[nodiscard]] std::size_t ending() override;

  // The most memory that one of the processes had: of those that are there, and of those that we ended. What one had that
  // ended by itself is not known.
  [[nodiscard]] std::size_t peakMemoryBytes() const;

 private:
  class Processes;
  class Child;
  const ProgramToSpawn program_;
  const FileDescriptor file_;  // the program's own; not open where there was none
  const std::shared_ptr<Processes> processes_;
};

}  // namespace lumivane
