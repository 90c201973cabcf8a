// The desktop's file browser.
//
// Threads: main only; the call returns at once, the browser opens when it is ready.
// Errors:  logged; where no browser can select a file, its folder is opened instead.
#pragma once

#include <string>

namespace lumivane {

class FileBrowser {
 public:
  virtual ~FileBrowser() = default;
  // Shows the file's folder with the file selected. The path is absolute and may hold any bytes.
  virtual void selectFile(const std::string& path) = 0;
};

}  // namespace lumivane
