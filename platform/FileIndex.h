// Something that can list the files of a folder tree: an index that another program keeps, or a walk of our own.
//
// Threads: open() from any thread, several at once; what it gives is used by one thread at a time. Both may block, and
//          end early when a stop is requested.
// Units:   sizes in bytes and pixels; times in nanoseconds since 1970.
// Errors:  a Result with one line for the log.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

#include "platform/FileStamp.h"
#include "platform/Geometry.h"
#include "platform/MetadataQuery.h"
#include "platform/Result.h"

namespace lumivane {

struct IndexedFile {
  std::string path;
  FileStamp stamp;             // where the picture's size is known, only its bytes count
  std::optional<SizePx> size;  // of the picture, as stored; absent: not known, the file has to be asked
};

// A folder tree that an index has agreed to answer for.
class IndexedFolder {
 public:
  using Found = std::function<void(IndexedFile file)>;

  virtual ~IndexedFolder() = default;

  // For the log: "the desktop's index (...)".
  [[nodiscard]] virtual std::string name() const = 0;
  // Whether a search tells of every file of the tree, so that what it does not tell of is not there any more.
  [[nodiscard]] virtual bool tellsOfAllFiles() const = 0;
  // Tells of every file that may fit, and maybe of some that do not. A failure comes after what was told until then.
  [[nodiscard]] virtual Result<Done> search(const PicturePredicate& predicate, const Found& found,
                                            std::stop_token stop) = 0;
};

class FileIndex {
 public:
  virtual ~FileIndex() = default;
  // The tree below an absolute path, or why the index does not answer for it.
  [[nodiscard]] virtual Result<std::unique_ptr<IndexedFolder>> open(const std::string& folder,
                                                                    std::stop_token stop) = 0;
};

}  // namespace lumivane
