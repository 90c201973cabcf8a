// Carries a question of the walk to the main thread, where the user is asked, and waits there for the answer.
//
// Threads: ask() on the walk's thread, which it blocks; everything else main only. The main thread never waits.
// Owns:    the question that is open.
// Errors:  a question that can no longer be put or answered is denied.
#pragma once

#include <functional>
#include <memory>
#include <stop_token>
#include <string>

#include "collection/DirectoryWalk.h"
#include "platform/MainLoop.h"

namespace lumivane {

class MainThreadQuestion {
 public:
  using Reply = std::function<void(PermissionAnswer answer)>;
  // Shows the question about a folder and returns at once; the reply is called when the user has answered. A reply
  // that is dropped without having been called is a denial; a second call counts for nothing.
  using Present = std::function<void(const std::string& folder, Reply reply)>;

  MainThreadQuestion(MainLoop& mainLoop, Present present);

  // To be given to the walk: [&](const auto& folder, auto stop) { return question.ask(folder, stop); }.
  [[nodiscard]] PermissionAnswer ask(const std::string& folder, const std::stop_token& stop);

 private:
  struct State;

  MainLoop& mainLoop_;
  const Present present_;
  const std::shared_ptr<State> state_;  // shared with posted jobs and replies, which may outlive this object
};

}  // namespace lumivane
