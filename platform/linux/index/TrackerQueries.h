// The questions to the SPARQL service of the desktop's index.
//
// Threads: one at a time; every call blocks within the time limit. The calls need a main context of their own, which
//          OwnMainContext gives to the calling thread.
// Owns:    the connection to the service.
// Errors:  one line for the log.
#pragma once

#include <libtracker-sparql/tracker-sparql.h>

#include <functional>
#include <string>

#include "platform/Result.h"
#include "platform/linux/index/IndexRow.h"
#include "platform/linux/index/SessionBus.h"

namespace lumivane {

// While it lives, what GLib's libraries do on this thread does not touch the program's main loop.
class OwnMainContext {
 public:
  OwnMainContext();
  OwnMainContext(const OwnMainContext&) = delete;
  OwnMainContext& operator=(const OwnMainContext&) = delete;
  ~OwnMainContext();

  // Works until the condition holds.
  void runUntil(const bool& condition);

 private:
  GMainContext* const context_;
};

class TrackerQueries {
 public:
  [[nodiscard]] static Result<TrackerQueries> connect(const SessionBus& bus, const std::string& service,
                                                      OwnMainContext& context, TimeLimit& limit);

  // Whether the index holds this folder itself.
  [[nodiscard]] Result<bool> holdsFolder(const std::string& folderUri, TimeLimit& limit);
  // How many files and folders it holds below this one.
  [[nodiscard]] Result<std::int64_t> numFilesBelow(const std::string& folderUri, TimeLimit& limit);
  // Every file below the folder that is larger. The limit is for each row anew.
  [[nodiscard]] Result<Done> filesBelow(const std::string& folderUri, std::uint32_t largerThanBytes,
                                        const std::function<void(IndexRow row)>& found, TimeLimit& limit,
                                        std::chrono::milliseconds limitPerRow);

 private:
  using Cursor = GioRef<TrackerSparqlCursor>;

  explicit TrackerQueries(GioRef<TrackerSparqlConnection> connection) : connection_(std::move(connection)) {}
  [[nodiscard]] Result<GioRef<TrackerSparqlStatement>> prepare(const char* sparql, TimeLimit& limit);
  [[nodiscard]] Result<std::int64_t> number(const char* sparql, const char* name, const std::string& text,
                                            TimeLimit& limit);
  [[nodiscard]] static Result<Cursor> run(TrackerSparqlStatement* statement, TimeLimit& limit);

  GioRef<TrackerSparqlConnection> connection_;
};

}  // namespace lumivane
