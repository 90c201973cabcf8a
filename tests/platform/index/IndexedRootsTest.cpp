#include "platform/linux/index/IndexedRoots.h"

#include <gtest/gtest.h>

namespace lumivane {
namespace {

std::string expanded(std::string_view entry) {
  return expandedRoot(entry, "/home/me", [](std::string_view name) -> std::string {
    if (name == "PICTURES") return "/home/me/Bilder/";
    return name == "MUSIC" ? "/home/me" : "";
  });
}

TEST(IndexedRoots, EntriesAreExpanded) {
  EXPECT_EQ(expanded("&PICTURES"), "/home/me/Bilder");
  EXPECT_EQ(expanded("$HOME"), "/home/me");
  EXPECT_EQ(expanded("$HOME/Photos/"), "/home/me/Photos");
  EXPECT_EQ(expanded("~/Photos"), "/home/me/Photos");
  EXPECT_EQ(expanded("/data"), "/data");
}

TEST(IndexedRoots, WhatIsNoFolderIsNone) {
  EXPECT_EQ(expanded("&MUSIC"), "");  // switched off
  EXPECT_EQ(expanded("&NONSENSE"), "");
  EXPECT_EQ(expanded("$HOMELESS"), "");
  EXPECT_EQ(expanded("~other"), "");
  EXPECT_EQ(expanded("relative/path"), "");
  EXPECT_EQ(expanded(""), "");
}

TEST(IndexedRoots, AFolderIsBelowARootOrIsOne) {
  const std::vector<std::string> roots = {"/home/me/Pictures", "/data"};
  EXPECT_TRUE(isBelowRoots("/data", roots));
  EXPECT_TRUE(isBelowRoots("/home/me/Pictures/a/b", roots));
  EXPECT_FALSE(isBelowRoots("/home/me", roots));
  EXPECT_FALSE(isBelowRoots("/data2", roots));
  EXPECT_FALSE(isBelowRoots("/data", {}));
}

}  // namespace
}  // namespace lumivane
