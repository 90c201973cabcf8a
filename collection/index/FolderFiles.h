// The index of a machine that has none: goes through the folders each time it is asked. Links are not followed.
//
// Threads: as in FileIndex.h.
// Units:   as in FileIndex.h.
// Errors:  a folder that cannot be read is logged, and the others are still gone through.
#pragma once

#include "collection/LeftOut.h"
#include "platform/FileIndex.h"
#include "platform/Log.h"

namespace lumivane {

class FolderFiles final : public FileIndex {
 public:
  // Both outlive what open() gives.
  explicit FolderFiles(Log& log, TellLeftOut tellLeftOut = {});

  // Never refuses.
  [[nodiscard]] Result<std::unique_ptr<IndexedFolder>> open(const std::string& folder,
                                                            std::stop_token stop) override;

 private:
  Log& log_;
  const TellLeftOut tellLeftOut_;
};

}  // namespace lumivane
