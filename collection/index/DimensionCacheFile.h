// The cache of measured pictures on disk. It holds nothing that could not be measured again.
//
// Threads: any one.
// Errors:  logged; a cache that cannot be read is an empty one, and is replaced.
#pragma once

#include <string>

#include "collection/index/DimensionCache.h"
#include "platform/Files.h"
#include "platform/Log.h"

namespace lumivane {

// Where it lies in the user's folder for caches; empty where there is none.
[[nodiscard]] std::string dimensionCachePath(const std::string& cacheFolder);

class DimensionCacheFile {
 public:
  // An empty path: nothing is kept from one search to the next.
  DimensionCacheFile(std::string path, Files& files, Log& log);

  [[nodiscard]] DimensionCache load() const;
  // Writes only what has changed.
  void store(const DimensionCache& cache) const;

 private:
  const std::string path_;
  Files& files_;
  Log& log_;
};

}  // namespace lumivane
