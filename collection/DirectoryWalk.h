// Finds the pictures of a folder tree by walking it, file by file, and asks before it follows a link to a folder.
//
// Threads: scanDirectoryByHand() runs on one thread: its own after start(), else the caller's. numImages() and
//          isFinished() from any thread; takeResult() from any thread once isFinished().
// Owns:    its thread and the growing lists, which are handed over when the walk is finished.
// Units:   sizes in bytes, excludekB in KiB.
// Errors:  each concerns one entry of a folder: it is logged and left out. Nothing ends a walk early but the
//          destruction of this object.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

#include "collection/FolderTree.h"
#include "collection/LeftOut.h"
#include "collection/SkipPatterns.h"
#include "platform/Log.h"

namespace lumivane {

// What the user said to the question whether a folder behind a link may be included.
struct PermissionAnswer {
  long response = 0;  // kUserConfirmed, or anything else for a denial
  std::string
      folder;  // with a confirmation: the folder that the user chose, which need not be the one asked for
};
inline constexpr long kUserConfirmed = 1;

// Asks about a folder and waits for the answer; called on the walk's thread. When a stop is requested, the answer
// no longer counts, and waiting for it must end.
using AskPermission = std::function<PermissionAnswer(const std::string& folder, std::stop_token stop)>;

struct WalkRequest {
  std::string mainDirectoryLocation{};      // an absolute path
  std::uint32_t excludekB = 0;              // files of this size and smaller ones are left out
  std::vector<std::string> skipPatterns{};  // regular expressions over whole paths
  AskPermission askPermission{};            // absent: every question is answered with no
  TellLeftOut tellLeftOut{};  // absent: nobody asks what is left out; called on the walk's thread
};

struct WalkResult {
  std::vector<std::string> imagefiles;       // absolute paths, in the order found
  std::vector<std::string> rootDirectories;  // the main folder, then those that the user allowed
};

class DirectoryWalk final : private FolderVisitor {
 public:
  // The pictures folder included; it also ends a cycle of links that the user keeps allowing.
  static constexpr std::size_t kMostRoots = 10001;

  DirectoryWalk(WalkRequest request, Log& log);
  DirectoryWalk(const DirectoryWalk&) = delete;
  DirectoryWalk& operator=(const DirectoryWalk&) = delete;
  // Breaks off a walk that still runs, an open question included, and waits for its thread.
  ~DirectoryWalk() override;

  // Walks on a thread of its own. Once per object.
  void start();
  // Walks here and now. Once per object.
  void scanDirectoryByHand();

  // How many pictures were found so far.
  [[nodiscard]] std::size_t numImages() const { return numImages_.load(std::memory_order_relaxed); }
  [[nodiscard]] bool isFinished() const { return isFinished_.load(std::memory_order_acquire); }
  // Requires: isFinished(). Once per object.
  [[nodiscard]] WalkResult takeResult();

 private:
  bool visit(const FolderEntry& entry) override;
  void passOver(const FolderEntry& entry) override;
  void cannotRead(const std::string& folderPath, int error) override;
  bool stopWanted() const override;

  void walkAllRoots();
  void walkRoot(const std::string& root);
  bool visitFolder(const FolderEntry& entry);
  void visitFile(const FolderEntry& entry);
  void visitAlias(const FolderEntry& entry);
  void visitDeadAlias(const FolderEntry& entry, const std::string& path);
  void askForFolder(const std::string& alias, const std::string& folder);
  void leaveOut(const FolderEntry& entry, LeftOut rule);
  [[nodiscard]] bool isLargeEnough(const FolderEntry& entry);
  [[nodiscard]] bool isFitForList(const FolderEntry& entry);

  // Constant after construction
  const WalkRequest request_;
  Log& log_;

  // The walk's thread only, until isFinished_
  SkipPatterns skipPatterns_;
  WalkResult result_;
  std::uint32_t numDirectories_ = 0;
  bool toldOfTooManyRoots_ = false;

  // Any thread
  std::atomic<std::size_t> numImages_{0};
  std::atomic<bool> isFinished_{false};
  std::stop_source stop_;

  std::jthread thread_;  // last: it ends before anything it uses
};

}  // namespace lumivane
