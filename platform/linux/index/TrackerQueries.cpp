#include "platform/linux/index/TrackerQueries.h"

#include <utility>

namespace lumivane {
namespace {

constexpr std::size_t kMostRows = 5'000'000;

constexpr const char* kHoldsFolder =
    "SELECT COUNT(?f) { GRAPH tracker:FileSystem { ?f a nfo:FileDataObject ; nie:url ~folder } }";

constexpr const char* kNumFilesBelow =
    "SELECT COUNT(?f) { GRAPH tracker:FileSystem { ?f a nfo:FileDataObject ; nie:url ?uri }"
    " FILTER (STRSTARTS(?uri, ~prefix)) }";

// Every file, not only those that the index takes for pictures: it leaves out WebP, HEIF and JPEG XL, and what its
// extractor has not come to yet. Sides it does not know are not bound.
constexpr const char* kFilesBelow =
    "SELECT ?uri ?bytes ?width ?height {"
    " GRAPH tracker:FileSystem { ?f a nfo:FileDataObject ; nie:url ?uri ; nfo:fileSize ?bytes }"
    " OPTIONAL { GRAPH tracker:Pictures { ?p nie:isStoredAs ?f ; nfo:width ?width ; nfo:height ?height } }"
    " FILTER (?bytes > ~least && STRSTARTS(?uri, ~prefix)) }";

std::string reasonOf(const GioError& error, const TimeLimit& limit) {
  return limit.hasPassed() ? "it takes too long" : error.message();
}

std::string prefixOf(const std::string& folderUri) {
  return folderUri.ends_with('/') ? folderUri : folderUri + "/";
}

std::int64_t numberIn(TrackerSparqlCursor* row, int column) {
  return tracker_sparql_cursor_is_bound(row, column) == TRUE ? tracker_sparql_cursor_get_integer(row, column)
                                                             : 0;
}

IndexRow rowOf(TrackerSparqlCursor* row) {
  const char* const uri = tracker_sparql_cursor_get_string(row, 0, nullptr);
  return {uri == nullptr ? std::string() : std::string(uri), numberIn(row, 1), numberIn(row, 2),
          numberIn(row, 3)};
}

}  // namespace

OwnMainContext::OwnMainContext() : context_(g_main_context_new()) {
  g_main_context_push_thread_default(context_);
}

OwnMainContext::~OwnMainContext() {
  g_main_context_pop_thread_default(context_);
  g_main_context_unref(context_);
}

void OwnMainContext::runUntil(const bool& condition) {
  while (!condition) g_main_context_iteration(context_, TRUE);
}

// Asynchronously: the library's blocking call cannot be ended.
Result<TrackerQueries> TrackerQueries::connect(const SessionBus& bus, const std::string& service,
                                               OwnMainContext& context, TimeLimit& limit) {
  struct Answer {
    bool isThere = false;
    TrackerSparqlConnection* connection = nullptr;
    GioError error;
  } answer;
  tracker_sparql_connection_bus_new_async(
      service.c_str(), nullptr, bus.connection(), limit.cancellable(),
      [](GObject*, GAsyncResult* result, gpointer data) {
        auto* const waiting = static_cast<Answer*>(data);
        waiting->connection = tracker_sparql_connection_bus_new_finish(result, waiting->error.out());
        waiting->isThere = true;
      },
      &answer);
  context.runUntil(answer.isThere);
  if (answer.connection == nullptr) return Error{reasonOf(answer.error, limit)};
  return TrackerQueries(GioRef<TrackerSparqlConnection>(answer.connection));
}

Result<GioRef<TrackerSparqlStatement>> TrackerQueries::prepare(const char* sparql, TimeLimit& limit) {
  GioError error;
  GioRef<TrackerSparqlStatement> statement(
      tracker_sparql_connection_query_statement(connection_.get(), sparql, limit.cancellable(), error.out()));
  if (!statement) return Error{reasonOf(error, limit)};
  return statement;
}

Result<TrackerQueries::Cursor> TrackerQueries::run(TrackerSparqlStatement* statement, TimeLimit& limit) {
  GioError error;
  Cursor cursor(tracker_sparql_statement_execute(statement, limit.cancellable(), error.out()));
  if (!cursor) return Error{reasonOf(error, limit)};
  return cursor;
}

Result<std::int64_t> TrackerQueries::number(const char* sparql, const char* name, const std::string& text,
                                            TimeLimit& limit) {
  const auto statement = prepare(sparql, limit);
  if (!statement) return Error{statement.error()};
  tracker_sparql_statement_bind_string(statement.value().get(), name, text.c_str());
  const Result<Cursor> cursor = run(statement.value().get(), limit);
  if (!cursor) return Error{cursor.error()};
  GioError error;
  if (tracker_sparql_cursor_next(cursor.value().get(), limit.cancellable(), error.out()) == FALSE)
    return Error{reasonOf(error, limit)};
  return numberIn(cursor.value().get(), 0);
}

Result<bool> TrackerQueries::holdsFolder(const std::string& folderUri, TimeLimit& limit) {
  const Result<std::int64_t> held = number(kHoldsFolder, "folder", folderUri, limit);
  if (!held) return Error{held.error()};
  return held.value() > 0;
}

Result<std::int64_t> TrackerQueries::numFilesBelow(const std::string& folderUri, TimeLimit& limit) {
  return number(kNumFilesBelow, "prefix", prefixOf(folderUri), limit);
}

Result<Done> TrackerQueries::filesBelow(const std::string& folderUri, std::uint32_t largerThanBytes,
                                        const std::function<void(IndexRow row)>& found, TimeLimit& limit,
                                        std::chrono::milliseconds limitPerRow) {
  limit.restart(limitPerRow);
  const auto statement = prepare(kFilesBelow, limit);
  if (!statement) return Error{statement.error()};
  tracker_sparql_statement_bind_string(statement.value().get(), "prefix", prefixOf(folderUri).c_str());
  tracker_sparql_statement_bind_int(statement.value().get(), "least", largerThanBytes);
  const Result<Cursor> cursor = run(statement.value().get(), limit);
  if (!cursor) return Error{cursor.error()};
  GioError error;
  for (std::size_t i = 0; i < kMostRows; ++i) {
    limit.restart(limitPerRow);
    const bool isRow =
        tracker_sparql_cursor_next(cursor.value().get(), limit.cancellable(), error.out()) == TRUE;
    if (error.isSet()) return Error{reasonOf(error, limit)};
    if (!isRow) return Done{};
    found(rowOf(cursor.value().get()));
  }
  return Error{"it tells of too many files"};
}

}  // namespace lumivane
