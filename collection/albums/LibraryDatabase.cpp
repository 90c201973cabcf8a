#include "collection/albums/LibraryDatabase.h"

#include <sqlite3.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/PrintableText.h"

namespace lumivane {
namespace {

constexpr int kStepsBetweenLooks = 10'000;
constexpr std::size_t kMostTables = 10'000;
constexpr std::size_t kMostColumns = 2'000;
constexpr int kHiddenColumn = 6;  // of "pragma table_xinfo": not 0 for what is not stored

struct Limit {
  int which;
  int value;
};
constexpr Limit kLimits[] = {{SQLITE_LIMIT_ATTACHED, 0},         {SQLITE_LIMIT_TRIGGER_DEPTH, 1},
                             {SQLITE_LIMIT_EXPR_DEPTH, 100},     {SQLITE_LIMIT_COMPOUND_SELECT, 10},
                             {SQLITE_LIMIT_VDBE_OP, 100'000},    {SQLITE_LIMIT_WORKER_THREADS, 0},
                             {SQLITE_LIMIT_COLUMN, kMostColumns}};

struct Switch {
  int which;
  int value;
};
constexpr Switch kSwitches[] = {{SQLITE_DBCONFIG_DEFENSIVE, 1},
                                {SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0},
                                {SQLITE_DBCONFIG_WRITABLE_SCHEMA, 0},
                                {SQLITE_DBCONFIG_ENABLE_TRIGGER, 0},
                                {SQLITE_DBCONFIG_ENABLE_VIEW, 0},
                                {SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION, 0},
                                {SQLITE_DBCONFIG_ENABLE_FTS3_TOKENIZER, 0},
                                {SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1}};

constexpr const char* kPragmas =
    "PRAGMA locking_mode = EXCLUSIVE;"  // the index of the log stays in memory
    "PRAGMA query_only = ON;"
    "PRAGMA temp_store = MEMORY;"
    "PRAGMA mmap_size = 0;"
    "PRAGMA cell_size_check = ON;"
    "PRAGMA automatic_index = OFF;";

// What an error of SQLite's means to someone who has nothing but the library.
Error problem(sqlite3* connection, int code) {
  switch (code & 0xff) {
    case SQLITE_NOTADB:
      return Error{"its database is encrypted, or none that can be read"};
    case SQLITE_CORRUPT:
      return Error{"its database is damaged"};
    case SQLITE_READONLY:
      return Error{"a change of it was broken off, which only its own application can put right"};
    case SQLITE_INTERRUPT:
      return Error{"reading it was broken off, or takes too long"};
    case SQLITE_TOOBIG:
      return Error{"its database holds a value that is too large"};
    default:
      return Error{"its database cannot be read: " + printable(sqlite3_errmsg(connection))};
  }
}

// Lets a question read columns of tables, and nothing else.
int authorize(void*, int action, const char* first, const char*, const char*, const char*) {
  switch (action) {
    case SQLITE_SELECT:
    case SQLITE_READ:
      return SQLITE_OK;
    case SQLITE_PRAGMA:
      return std::string_view(first) == "table_xinfo" ? SQLITE_OK : SQLITE_DENY;
    default:
      return SQLITE_DENY;
  }
}

// The longest beginning of valid UTF-8 that fits and does not end inside a character.
std::string_view cutOff(std::string_view text, std::size_t mostBytes) {
  if (text.size() <= mostBytes) return text;
  std::size_t end = mostBytes;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
  return text.substr(0, end);
}

}  // namespace

std::string quotedName(std::string_view name) {
  std::string quoted = "\"";
  for (const char c : name) quoted.append(c == '"' ? 2 : 1, c);
  return quoted + '"';
}

std::optional<std::int64_t> LibraryRow::integer(int column) const {
  if (sqlite3_column_type(statement_, column) != SQLITE_INTEGER) return std::nullopt;
  return sqlite3_column_int64(statement_, column);
}

std::optional<double> LibraryRow::number(int column) const {
  const int type = sqlite3_column_type(statement_, column);
  if (type != SQLITE_INTEGER && type != SQLITE_FLOAT) return std::nullopt;
  const double value = sqlite3_column_double(statement_, column);
  return std::isfinite(value) ? std::optional(value) : std::nullopt;
}

std::string_view LibraryRow::bytes(int column, int type) const {
  if (sqlite3_column_type(statement_, column) != type) return {};
  const void* first = sqlite3_column_blob(statement_, column);
  if (first == nullptr) return {};
  return {static_cast<const char*>(first),
          static_cast<std::size_t>(sqlite3_column_bytes(statement_, column))};
}

std::string LibraryRow::text(int column, std::size_t mostBytes) const {
  const std::string_view stored = bytes(column, SQLITE_TEXT);
  if (isValidUtf8(stored) && stored.find('\0') == std::string_view::npos) {
    return std::string(cutOff(stored, mostBytes));
  }
  return std::string(cutOff(printable(stored.substr(0, mostBytes)), mostBytes));
}

std::optional<std::string> LibraryRow::exactText(int column) const {
  if (sqlite3_column_type(statement_, column) != SQLITE_TEXT) return std::nullopt;
  return std::string(bytes(column, SQLITE_TEXT));
}

std::string_view LibraryRow::blob(int column) const {
  return bytes(column, SQLITE_BLOB);
}

void LibraryQuery::Finalize::operator()(sqlite3_stmt* statement) const {
  sqlite3_finalize(statement);
}

Result<Done> LibraryQuery::run(std::initializer_list<std::int64_t> parameters, const RowVisitor& visit) {
  sqlite3_stmt* const statement = statement_.get();
  int position = 0;
  for (const std::int64_t parameter : parameters) sqlite3_bind_int64(statement, ++position, parameter);
  int code = sqlite3_step(statement);
  while (code == SQLITE_ROW && visit(LibraryRow(statement))) code = sqlite3_step(statement);
  const bool failed = code != SQLITE_ROW && code != SQLITE_DONE;
  Result<Done> outcome =
      failed ? Result<Done>(problem(sqlite3_db_handle(statement), code)) : Result<Done>(Done{});
  sqlite3_reset(statement);
  return outcome;
}

LibraryDatabase::LibraryDatabase(LibraryFiles files, ReadLimits limits)
    : limits_(std::move(limits)), stepsLeft_(limits_.mostSteps), vfs_(std::move(files)) {}

LibraryDatabase::~LibraryDatabase() {
  sqlite3_close(connection_);
}

Result<std::unique_ptr<LibraryDatabase>> LibraryDatabase::open(LibraryFiles files, ReadLimits limits) {
  std::unique_ptr<LibraryDatabase> database(new LibraryDatabase(std::move(files), std::move(limits)));
  if (const Result<Done> connected = database->connect(); !connected) return Error{connected.error()};
  if (const Result<Done> restricted = database->restrict(); !restricted) return Error{restricted.error()};
  return database;
}

Result<Done> LibraryDatabase::connect() {
  constexpr int kFlags = SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_PRIVATECACHE;
  const int code = sqlite3_open_v2("/library", &connection_, kFlags, vfs_.name());
  if (code != SQLITE_OK) return problem(connection_, code);
  return Done{};
}

Result<Done> LibraryDatabase::restrict() {
  for (const Limit& limit : kLimits) sqlite3_limit(connection_, limit.which, limit.value);
  sqlite3_limit(connection_, SQLITE_LIMIT_LENGTH, limits_.largestValueBytes);
  for (const Switch& setting : kSwitches) {
    const int code = sqlite3_db_config(connection_, setting.which, setting.value, nullptr);
    // A build without a feature does not know its switch.
    if (code != SQLITE_OK && code != SQLITE_ERROR) return problem(connection_, code);
  }
  const int code = sqlite3_exec(connection_, kPragmas, nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) return problem(connection_, code);
  sqlite3_set_authorizer(connection_, authorize, nullptr);
  const auto look = [](void* self) { return static_cast<LibraryDatabase*>(self)->mustEnd() ? 1 : 0; };
  sqlite3_progress_handler(connection_, kStepsBetweenLooks, look, this);
  return Done{};
}

bool LibraryDatabase::mustEnd() {
  stepsLeft_ -= std::min<std::uint64_t>(stepsLeft_, kStepsBetweenLooks);
  return stepsLeft_ == 0 || limits_.stop.stop_requested();
}

Result<LibraryQuery> LibraryDatabase::query(const std::string& sql) {
  sqlite3_stmt* statement = nullptr;
  const int code = sqlite3_prepare_v2(connection_, sql.c_str(), -1, &statement, nullptr);
  if (code != SQLITE_OK) return problem(connection_, code);
  return LibraryQuery(statement);
}

Result<std::set<std::string, std::less<>>> LibraryDatabase::tables() {
  Result<LibraryQuery> question = query("SELECT name, rootpage FROM sqlite_schema WHERE type = 'table'");
  if (!question) return Error{question.error()};
  std::set<std::string, std::less<>> names;
  const Result<Done> asked = question.value().run({}, [&](const LibraryRow& row) {
    const bool storesRows = row.integer(1).value_or(0) > 0;  // 0 for virtual tables
    if (storesRows) names.insert(row.text(0, 200));
    return names.size() <= kMostTables;
  });
  if (!asked) return Error{asked.error()};
  return names;
}

Result<std::set<std::string, std::less<>>> LibraryDatabase::columnsOf(const std::string& table) {
  Result<LibraryQuery> question = query("PRAGMA table_xinfo(" + quotedName(table) + ")");
  if (!question) return Error{question.error()};
  std::set<std::string, std::less<>> names;
  const Result<Done> asked = question.value().run({}, [&](const LibraryRow& row) {
    if (row.integer(kHiddenColumn) == 0) names.insert(row.text(1, 200));
    return true;
  });
  if (!asked) return Error{asked.error()};
  return names;
}

}  // namespace lumivane
