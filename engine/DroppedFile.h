// What a file or folder that the user dropped on the window means for the collection.
//
// Threads: askFolderOfDroppedFile() main only; the disk, which may be asleep or gone, is asked on a thread of its own.
// Owns:    nothing.
// Errors:  an empty folder: nothing is there.
#pragma once

#include <functional>
#include <string>

#include "platform/BoundedCalls.h"
#include "platform/MainLoop.h"

namespace lumivane {

// The folder itself, or the one that a file lies in; empty where there is neither. Waits for the disk.
[[nodiscard]] std::string folderOfDroppedFile(const std::string& path);

// Tells the folder on the main loop, late or never where the disk does not answer. Without `calls` it is waited for.
void askFolderOfDroppedFile(BoundedCalls* calls, MainLoop& mainLoop, const std::string& path,
                            std::function<void(const std::string& folder)> completion);

}  // namespace lumivane
