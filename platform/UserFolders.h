// The folders of this user, as the XDG base directories define them.
//
// Threads: a value.
// Errors:  a folder that cannot be determined is empty.
#pragma once

#include <string>

namespace lumivane {

struct UserFolders {
  std::string config;    // $XDG_CONFIG_HOME/lumivane: one settings file per display
  std::string data;      // $XDG_DATA_HOME/lumivane: image lists and last-run records
  std::string state;     // $XDG_STATE_HOME: shared with other programs of ours, each under a name of its own
  std::string home;      // $HOME
  std::string pictures;  // the user's Pictures folder; may not exist
  std::string cache;     // $XDG_CACHE_HOME/lumivane: what can be made again
};

}  // namespace lumivane
