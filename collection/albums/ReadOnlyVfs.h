// The file system that SQLite sees when it reads a library: the library's own files, already open, and no way to
// write, make, lock or delete anything.
//
// With it, a database in write-ahead mode is read together with its log, its index of the log kept in memory: the
// usual ways either write beside the database or leave the log out.
//
// Threads: constructed, used and destroyed on one thread at a time; several objects may live at once.
// Owns:    the files, and its entry in SQLite's list of file systems.
// Errors:  SQLite's own, from the operations that are refused.
#pragma once

#include <memory>
#include <string>

#include "collection/albums/LibraryFiles.h"

struct sqlite3_vfs;

namespace lumivane {

class ReadOnlyVfs {
 public:
  explicit ReadOnlyVfs(LibraryFiles files);
  // Requires: every connection that uses it is closed.
  ~ReadOnlyVfs();
  ReadOnlyVfs(const ReadOnlyVfs&) = delete;
  ReadOnlyVfs& operator=(const ReadOnlyVfs&) = delete;

  // Opens as the database whatever name is given.
  // Requires: a connection with "PRAGMA locking_mode = EXCLUSIVE": nothing else keeps the index of a log in memory.
  [[nodiscard]] const char* name() const { return name_.c_str(); }
  [[nodiscard]] const LibraryFiles& files() const { return files_; }

 private:
  const LibraryFiles files_;
  std::string name_;
  std::unique_ptr<sqlite3_vfs> vfs_;
};

}  // namespace lumivane
