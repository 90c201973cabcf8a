// A folder of pictures whose names and kinds are a trial: every byte that a name may hold, links that lead nowhere
// or round and round, things that are not to be opened, folders too deep for any path.
#pragma once

#include <string>
#include <vector>

namespace lumivane {

// Where the shared sample pictures lie; empty when they are not there.
[[nodiscard]] std::string samplesFolder();

// A grey picture of that size as a JPEG file of at least 8 KiB.
[[nodiscard]] std::string greyJpeg(int width, int height);

class AwkwardTree {
 public:
  // Makes the tree in an existing, empty folder, of pictures from the samples or else of grey ones.
  explicit AwkwardTree(std::string folder);

  [[nodiscard]] const std::string& folder() const { return folder_; }

  // What a walk is to find with no smallest size, sorted by bytes. Whether what may not be read is found depends
  // on who runs the test.
  [[nodiscard]] std::vector<std::string> expectedPictures() const;
  // Names of pictures that no list can hold, and the beginning of the one whose path is too long.
  [[nodiscard]] std::vector<std::string> expectedLeftOut() const;
  // Every entry with its kind, size and mode, for telling whether anything was changed.
  [[nodiscard]] std::vector<std::string> inventory() const;

  // Appends the second half of the picture that is still being copied.
  void finishGrowing() const;
  void removeVanishing() const;

 private:
  void write(const std::string& name, const std::string& content) const;
  void makeFolder(const std::string& name) const;
  void makeLink(const std::string& name, const std::string& target) const;
  void makeNamedPictures() const;
  void makeFoldersAndLinks() const;
  void makeThingsThatAreNoPictures() const;
  void makeDeepFolder() const;
  [[nodiscard]] bool deepestIsReachable() const;

  std::string folder_;
  std::string picture_;  // the bytes of a picture file
};

}  // namespace lumivane
