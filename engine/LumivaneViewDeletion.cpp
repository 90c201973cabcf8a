// The Delete key: the shown picture goes to the trash and out of the list.
#include "engine/LumivaneView.h"
#include "platform/PrintableText.h"

namespace lumivane {
namespace {

bool canBeFileUrl(const std::string& path) {
  return path.starts_with('/') && path.find('\0') == std::string::npos;
}

}  // namespace

// Says whether the other displays are to follow.
bool LumivaneView::deleteShownImage() {
  if (!settings_.enableDeleteAtRuntime_) {
    displayErrorMessage("Delete key has been disabled in Preferences", "");
    host_.sounds.play(Sound::Funk, {});
    return false;
  }
  if (!shownFileIsNamed()) return true;
  logMessage("Deleting image " + printable(filename_), false);
  if (deleteFile(filename_)) {
    forgetImageAt(img_index_);
    saveImageList();
    startNewCycle();
  } else {
    host_.sounds.play(Sound::Funk, {});
    logFileAccessError(filename_);
  }
  return true;
}

// After a deletion the positions in the history are those of the longer list, so that a step back can bring a picture
// under its neighbour's name. Nobody means to throw away a picture that is not on the screen.
bool LumivaneView::shownFileIsNamed() {
  if (current_image_path_ == filename_) return true;
  logAndDisplayMessage("Can't delete ", printable(current_image_path_), true);
  host_.sounds.play(Sound::Funk, {});
  return false;
}

bool LumivaneView::deleteFile(const std::string& path) {
  if (!host_.files.exists(path)) {
    logMessage("Image at path " + printable(path) + " does not exist!", true);
    return false;
  }
  if (!canBeFileUrl(path)) {
    logMessage("fileURLWithPath failed for: " + printable(path) + "!", true);
    return false;
  }
  if (const Result<Done> trashed = host_.trash.trashItem(path); !trashed) {
    logMessage("Failed to delete " + printable(path) + "!\n Error: " + trashed.error(), true);
    return false;
  }
  host_.sounds.play(Sound::DragToTrash, [&log = host_.log](const std::string& /*reason*/) {
    log.error("Could not find system sound file for trash operation!");
  });
  return true;
}

// What the slot holds or the queue still brings was chosen by its position in the longer list.
void LumivaneView::forgetImageAt(ImageIndex index) {
  if (index < imagefiles_.size()) imagefiles_.erase(imagefiles_.begin() + static_cast<std::ptrdiff_t>(index));
  prefetch_.empty();
  prefetch_.prefetchNextImageFailed_ = false;
  abandonPrefetch();
  order_.forget(index);
}

}  // namespace lumivane
