// One step of PosixFiles: a new content beside a file, which then takes the file's place.
//
// Threads: one; an object on the stack of the operation that it serves.
// Owns:    the temporary file, which is removed again unless commit() succeeded. One that a killed process left is
//          removed by the next replacement in the folder: nobody holds its lock any more.
// Errors:  every failure is the system's error number.
#pragma once

#include <sys/types.h>

#include <string>
#include <string_view>

#include "platform/linux/FileDescriptor.h"

namespace lumivane {

class FileReplacement {
 public:
  // The folder must exist; an empty one is the current folder.
  FileReplacement(const std::string& folder, std::string name);
  ~FileReplacement();
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;

  // Each gives 0 or an error number. In this order: create, write, commit.
  [[nodiscard]] int create(mode_t permissions);
  [[nodiscard]] int write(std::string_view content);
  [[nodiscard]] int commit();

 private:
  FileDescriptor folder_;
  int folderError_ = 0;
  std::string name_;
  std::string temporaryName_;  // empty = there is none to remove
  FileDescriptor file_;
  FileDescriptor lock_;  // the same open file: its lock is held until it has its final name
};

// Writes the folder's entries to the disk; file systems that know no such thing count as done.
[[nodiscard]] int syncFolder(int folderDescriptor);

}  // namespace lumivane
