#include "collection/index/PictureSearch.h"

#include <memory>
#include <optional>
#include <utility>

#include "collection/PictureTypes.h"
#include "collection/index/DimensionCacheFile.h"
#include "collection/index/MeasuringThreads.h"
#include "platform/PrintableText.h"

namespace lumivane {
namespace {

// The first index that answers for the folder, its refusals logged; nullptr: none does.
std::unique_ptr<IndexedFolder> openIndex(const PictureSources& sources, const std::string& folder,
                                         const std::stop_token& stop) {
  for (FileIndex* index : sources.indices) {
    Result<std::unique_ptr<IndexedFolder>> opened = index->open(folder, stop);
    if (stop.stop_requested()) return nullptr;
    if (opened) return std::move(opened).value();
    sources.log.information(opened.error());
  }
  return nullptr;
}

// One search, from the files that an index tells of to the pictures that fit.
class Search {
 public:
  Search(const PictureSources& sources, const PicturePredicate& predicate, const FoundPicture& found,
         const std::stop_token& stop)
      : sources_(sources),
        predicate_(predicate),
        found_(found),
        stop_(stop),
        cacheFile_(sources.cachePath, sources.files, sources.log) {}

  void run(IndexedFolder& index) {
    const Result<Done> searched = index.search(
        predicate_, [this](IndexedFile file) { examine(std::move(file)); }, stop_);
    if (threads_) threads_->finish(stop_);
    takeMeasured();
    if (stop_.stop_requested()) {
      keepMeasured();
      return;
    }
    if (!searched) {
      sources_.log.error("The search broke off: " + searched.error() +
                         "; pictures found until then = " + std::to_string(numFound_) + " !");
    } else if (index.tellsOfAllFiles()) {
      cache().forgetUnseenBelow(predicate_.folder);
    }
    tellNumbers();
    keepMeasured();
  }

 private:
  void examine(IndexedFile file) {
    takeMeasured();
    if (!isPictureFileName(std::string_view(file.path).substr(file.path.rfind('/') + 1))) {
      leaveOut(file.path, LeftOut::Type);
      return;
    }
    if (!file.size)
      file.size = cache().find(file.path, file.stamp);  // also of small files: they are still there
    if (file.stamp.bytes <= predicate_.largerThanBytes) {
      leaveOut(file.path, LeftOut::FileSize);
    } else if (file.size) {
      decide(std::move(file));
    } else {
      if (!threads_) threads_ = std::make_unique<MeasuringThreads>(sources_.dimensions, sources_.log);
      threads_->add(std::move(file), stop_);
    }
  }

  void takeMeasured() {
    if (!threads_) return;
    for (IndexedFile& file : threads_->take()) {
      if (!file.size) {
        ++numUnreadable_;
        leaveOut(file.path, LeftOut::Unreadable);
        continue;
      }
      ++numMeasured_;
      cache().keep(file.path, file.stamp, *file.size);
      decide(std::move(file));
    }
  }

  void decide(IndexedFile file) {
    const std::uint64_t limit = predicate_.largerThanPixels;
    const SizePx size = *file.size;
    if (size == kNoPicture) {
      leaveOut(file.path, LeftOut::NoPicture);
    } else if (size.width <= 0 || static_cast<std::uint64_t>(size.width) <= limit || size.height <= 0 ||
               static_cast<std::uint64_t>(size.height) <= limit) {
      leaveOut(file.path, LeftOut::PixelSize);
    } else {
      ++numFound_;
      found_(std::move(file.path));
    }
  }

  void leaveOut(const std::string& path, LeftOut rule) const {
    if (sources_.tellLeftOut) sources_.tellLeftOut(path, rule);
  }

  // Read when it is first needed: an index may know every size.
  DimensionCache& cache() {
    if (!cache_) cache_ = cacheFile_.load();
    return *cache_;
  }

  void keepMeasured() const {
    if (cache_) cacheFile_.store(*cache_);
  }

  void tellNumbers() const {
    sources_.log.information("Pictures measured by their headers = " + std::to_string(numMeasured_));
    if (numUnreadable_ > 0)
      sources_.log.error("Pictures that could not be opened = " + std::to_string(numUnreadable_) + " !");
  }

  const PictureSources& sources_;
  const PicturePredicate& predicate_;
  const FoundPicture& found_;
  const std::stop_token& stop_;
  const DimensionCacheFile cacheFile_;
  std::optional<DimensionCache> cache_;
  std::unique_ptr<MeasuringThreads> threads_;  // nullptr: nothing had to be measured yet
  std::size_t numFound_ = 0;
  std::size_t numMeasured_ = 0;
  std::size_t numUnreadable_ = 0;
};

}  // namespace

void searchPictures(const PictureSources& sources, const PicturePredicate& predicate,
                    const FoundPicture& found, const std::stop_token& stop) {
  const std::unique_ptr<IndexedFolder> index = openIndex(sources, predicate.folder, stop);
  if (index == nullptr) return;
  sources.log.information("Pictures are searched by " + index->name() + ": " + printable(predicate.folder));
  Search(sources, predicate, found, stop).run(*index);
}

}  // namespace lumivane
