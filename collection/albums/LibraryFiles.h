// The files of a library's database, opened for reading and never in any other way: not one byte of a package that
// belongs to another program may change.
//
// Threads: a value, moved from thread to thread.
// Owns:    the open files, and a reader's lock on the database while it lives.
// Errors:  a database that is missing, empty, no file, or locked by a writer is an Error.
#pragma once

#include <sys/stat.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/Result.h"

namespace lumivane {

// A regular file that can only be read. One that was not there reads as empty.
class ReadOnlyFile {
 public:
  ReadOnlyFile() = default;
  ReadOnlyFile(ReadOnlyFile&& other) noexcept;
  ReadOnlyFile& operator=(ReadOnlyFile&& other) noexcept;
  ReadOnlyFile(const ReadOnlyFile&) = delete;
  ReadOnlyFile& operator=(const ReadOnlyFile&) = delete;
  ~ReadOnlyFile();

  // A file that is not there is no failure; anything but a file is one.
  [[nodiscard]] static Result<ReadOnlyFile> open(const std::string& path);

  [[nodiscard]] bool isThere() const { return descriptor_ >= 0; }
  [[nodiscard]] int descriptor() const { return descriptor_; }
  // Absent when the system cannot tell.
  [[nodiscard]] std::optional<std::int64_t> size() const;
  // The number of bytes read, fewer only at the end of the file; absent after an error of the system.
  [[nodiscard]] std::optional<std::size_t> read(std::int64_t offset, char* buffer, std::size_t bytes) const;

 private:
  int descriptor_ = -1;
};

class LibraryFiles {
 public:
  // Opens the database and what lies beside it: the log of what was written last, and the journal of a change that
  // was broken off. Links are followed first, so that all three are found where the real file is.
  [[nodiscard]] static Result<LibraryFiles> open(const std::string& databasePath);

  [[nodiscard]] const ReadOnlyFile& database() const { return database_; }
  [[nodiscard]] const ReadOnlyFile& writeAheadLog() const { return writeAheadLog_; }
  [[nodiscard]] const ReadOnlyFile& journal() const { return journal_; }

  // Whether a writer moved the content of the log into the database since open(): what was read in between may be
  // of two minds. Writing that only made the log longer does no harm to a reader.
  [[nodiscard]] bool changedMeanwhile() const;

 private:
  struct Stamp {
    struct stat database {};
    std::int64_t logBytes = 0;
    std::array<char, 32> logHeader{};  // changes whenever the log is begun anew
  };
  [[nodiscard]] std::optional<Stamp> stamp() const;

  ReadOnlyFile database_;
  ReadOnlyFile writeAheadLog_;
  ReadOnlyFile journal_;
  Stamp opened_;
};

}  // namespace lumivane
