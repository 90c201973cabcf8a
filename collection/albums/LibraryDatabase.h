// A library's database as a hostile file: read-only, nothing in its schema runs, and no question costs more than a
// bounded number of steps.
//
// Threads: one at a time.
// Owns:    the connection and the open files.
// Units:   steps are instructions of SQLite's virtual machine, some 100 million a second.
// Errors:  what SQLite cannot or will not do is an Error that says what is the matter with the database.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <set>
#include <stop_token>
#include <string>
#include <string_view>

#include "collection/albums/LibraryFiles.h"
#include "collection/albums/ReadOnlyVfs.h"
#include "platform/Result.h"

struct sqlite3;
struct sqlite3_stmt;

namespace lumivane {

struct ReadLimits {
  std::stop_token stop{};                    // ends the reading
  std::uint64_t mostSteps = 2'000'000'000;   // of all questions together
  int largestValueBytes = 16 * 1024 * 1024;  // of one text, blob or row
};

// A row of an answer; valid only during the visit. Values of another type than asked for are absent, as NULL is.
class LibraryRow {
 public:
  explicit LibraryRow(sqlite3_stmt* statement) : statement_(statement) {}

  [[nodiscard]] std::optional<std::int64_t> integer(int column) const;
  [[nodiscard]] std::optional<double> number(int column) const;  // finite; whole numbers as well
  // Valid UTF-8 without zero bytes, cut off after mostBytes; bytes that are none are made printable.
  [[nodiscard]] std::string text(int column, std::size_t mostBytes) const;
  [[nodiscard]] std::optional<std::string> exactText(int column) const;  // the bytes as they are
  [[nodiscard]] std::string_view blob(int column) const;                 // empty = none

 private:
  [[nodiscard]] std::string_view bytes(int column, int type) const;

  sqlite3_stmt* statement_;
};

// Says whether to go on.
using RowVisitor = std::function<bool(const LibraryRow& row)>;

// A question that can be asked again and again.
class LibraryQuery {
 public:
  [[nodiscard]] Result<Done> run(std::initializer_list<std::int64_t> parameters, const RowVisitor& visit);

 private:
  friend class LibraryDatabase;
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const;
  };
  explicit LibraryQuery(sqlite3_stmt* statement) : statement_(statement) {}

  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

class LibraryDatabase {
 public:
  [[nodiscard]] static Result<std::unique_ptr<LibraryDatabase>> open(LibraryFiles files, ReadLimits limits);
  // Requires: all queries are gone.
  ~LibraryDatabase();
  LibraryDatabase(const LibraryDatabase&) = delete;
  LibraryDatabase& operator=(const LibraryDatabase&) = delete;

  // Tables and columns only: functions, views, virtual tables and generated columns are refused.
  [[nodiscard]] Result<LibraryQuery> query(const std::string& sql);

  // The names of the tables that store their rows themselves.
  [[nodiscard]] Result<std::set<std::string, std::less<>>> tables();
  // The names of the columns of a table that are stored.
  // Requires: a name out of tables().
  [[nodiscard]] Result<std::set<std::string, std::less<>>> columnsOf(const std::string& table);

  [[nodiscard]] bool changedMeanwhile() const { return vfs_.files().changedMeanwhile(); }

 private:
  LibraryDatabase(LibraryFiles files, ReadLimits limits);
  [[nodiscard]] Result<Done> connect();
  [[nodiscard]] Result<Done> restrict();
  [[nodiscard]] bool mustEnd();

  const ReadLimits limits_;
  std::uint64_t stepsLeft_;
  ReadOnlyVfs vfs_;
  sqlite3* connection_ = nullptr;
};

// A table's or column's name as it stands in a question.
[[nodiscard]] std::string quotedName(std::string_view name);

}  // namespace lumivane
