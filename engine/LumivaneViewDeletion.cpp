// The Delete key: the shown picture goes to the trash and out of the list.
#include "engine/LumivaneView.h"
#include "platform/PrintableText.h"

namespace lumivane {
namespace {

std::optional<ImageIndex> positionOf(const std::string& path, const ImageList& imagefiles,
                                     ImageIndex likely) {
  if (likely < imagefiles.size() && imagefiles[likely] == path) return likely;
  return imagefiles.find(path);
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
  deletion_.begin(filename_, [this, path = filename_, index = img_index_](const DeletionOutcome& outcome) {
    shownImageDeleted(path, index, outcome);
  });
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

// On a slow disk the show may have gone on meanwhile, or have another list.
void LumivaneView::shownImageDeleted(const std::string& path, ImageIndex index,
                                     const DeletionOutcome& outcome) {
  if (outcome) {
    logMessage(outcome->reason, true);
    host_.sounds.play(Sound::Funk, {});
    logMessage(outcome->fileAccess, true);
    return;
  }
  host_.sounds.play(Sound::DragToTrash, [&log = host_.log](const std::string& /*reason*/) {
    log.error("Could not find system sound file for trash operation!");
  });
  const std::optional<ImageIndex> position = positionOf(path, imagefiles_, index);
  if (!position) return;
  const bool stillShown = *position == img_index_ && filename_ == path;
  forgetImageAt(*position);
  saveImageList();
  if (stillShown) askForOtherPicture();
}

// What the slot holds or the queue still brings was chosen by its position in the longer list.
void LumivaneView::forgetImageAt(ImageIndex index) {
  imagefiles_.erase(index);
  if (index < img_index_) --img_index_;
  prefetch_.empty();
  prefetch_.prefetchNextImageFailed_ = false;
  abandonPrefetch();
  order_.forget(index);
}

}  // namespace lumivane
