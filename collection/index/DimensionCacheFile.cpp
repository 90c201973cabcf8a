#include "collection/index/DimensionCacheFile.h"

#include <utility>

#include "platform/PrintableText.h"

namespace lumivane {
namespace {

// A million entries with names of a usual length are a third of this.
constexpr std::size_t kMostBytes = std::size_t{256} << 20;

}  // namespace

std::string dimensionCachePath(const std::string& cacheFolder) {
  return cacheFolder.empty() ? std::string() : cacheFolder + "/PictureDimensions.cache";
}

DimensionCacheFile::DimensionCacheFile(std::string path, Files& files, Log& log)
    : path_(std::move(path)), files_(files), log_(log) {}

DimensionCache DimensionCacheFile::load() const {
  if (path_.empty() || !files_.exists(path_)) return {};
  const Result<std::string> content = files_.read(path_, kMostBytes);
  if (!content) {
    log_.error("The cache of picture sizes cannot be read: " + content.error() + " !");
    return {};
  }
  Result<DimensionCache> cache = DimensionCache::parsed(content.value());
  if (cache) return std::move(cache).value();
  log_.error("The cache of picture sizes is made anew: " + printable(path_) + ": " + cache.error() + " !");
  return {};
}

void DimensionCacheFile::store(const DimensionCache& cache) const {
  if (path_.empty() || !cache.isChanged()) return;
  const std::string content = cache.content();
  if (content.size() > kMostBytes) return;
  if (const Result<Done> stored = files_.writeAtomically(path_, content); !stored)
    log_.error("The cache of picture sizes cannot be written: " + stored.error() + " !");
}

}  // namespace lumivane
