// A whole world for one view in virtual time: displays, files, settings, pictures, memory, text.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "engine/LumivaneView.h"
#include "tests/support/FakeTextRenderer.h"
#include "tests/support/MemoryFiles.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/VirtualTime.h"

namespace lumivane {

// A picture as a test describes it; absent parts of its way through the decoder fail.
struct FakePicture {
  bool opens = true;
  ImageSourceStatus status = ImageSourceStatus::Complete;
  bool decodes = true;
  PropertyDictionary properties;
  SizePx pixels{4, 3};  // as it is decoded, small for most tests
};

[[nodiscard]] inline FakePicture pictureOf(std::int32_t width, std::int32_t height) {
  FakePicture picture;
  picture.properties.pixelWidth = width;
  picture.properties.pixelHeight = height;
  return picture;
}

class FakeImageDecoder final : public ImageDecoder {
 public:
  std::map<std::string, FakePicture> pictures;           // by path; any other path cannot be opened
  int longestSide = 0;                                   // that the last picture was wanted with
  std::map<std::string, int> decodes;                    // how often each path was decoded
  std::function<void(const std::string& path)> touched;  // told of every picture that is opened

  [[nodiscard]] std::unique_ptr<ImageSource> open(const std::string& path) override {
    if (touched) touched(path);
    const auto found = pictures.find(path);
    if (found == pictures.end() || !found->second.opens) return nullptr;
    return std::make_unique<Source>(*this, path, found->second);
  }

 private:
  struct Source final : ImageSource {
    Source(FakeImageDecoder& d, std::string p, FakePicture pic)
        : decoder(d), path(std::move(p)), picture(std::move(pic)) {}
    [[nodiscard]] ImageSourceStatus status() const override { return picture.status; }
    [[nodiscard]] std::optional<PropertyDictionary> properties() override { return picture.properties; }
    [[nodiscard]] BitmapRef thumbnail(int maxPixelSize) override {
      decoder.longestSide = maxPixelSize;
      ++decoder.decodes[path];
      return picture.decodes ? makeBlankBitmap(picture.pixels) : nullptr;
    }
    FakeImageDecoder& decoder;
    std::string path;
    FakePicture picture;
  };
};

class FakeDisplays final : public Displays {
 public:
  std::vector<Display> all{{1, "Color LCD", {1920, 1080}, 1}};
  [[nodiscard]] std::vector<Display> attached() const override { return all; }
};

class FakeWindow final : public HostWindow {
 public:
  RectPt rectangle{{0, 0}, {1920, 1080}};
  DisplayNumber display = 1;
  double pixelsPerPoint = 1;
  bool fullScreen = false;
  int fullScreenToggles = 0;
  bool cursorHidden = false;
  bool reportsMouseMoves = false;

  [[nodiscard]] RectPt frame() const override { return rectangle; }
  [[nodiscard]] DisplayNumber displayNumber() const override { return display; }
  [[nodiscard]] double scale() const override { return pixelsPerPoint; }
  [[nodiscard]] bool isFullScreen() const override { return fullScreen; }
  [[nodiscard]] bool isMaximized() const override { return false; }
  [[nodiscard]] bool isMinimized() const override { return false; }
  [[nodiscard]] bool isExposed() const override { return true; }
  void show() override {}
  void toggleFullScreen() override {
    fullScreen = !fullScreen;
    ++fullScreenToggles;
  }
  void close() override {}
  void setTitle(std::string_view /*utf8*/) override {}
  void setCursorHidden(bool hidden) override { cursorHidden = hidden; }
  void setReportsMouseMoves(bool reports) override { reportsMouseMoves = reports; }
};

// A geocoder whose answers come when the test says so.
class FakeGeocoder final : public Geocoder {
 public:
  struct Request {
    double latitude;
    double longitude;
    Completion completion;
  };
  std::vector<Request> requests;
  void reverseGeocodeLocation(double latitude, double longitude, Completion completion) override {
    requests.push_back({latitude, longitude, std::move(completion)});
  }
};

class FakeApplication final : public Application {
 public:
  int terminations = 0;
  void terminate() override { ++terminations; }
};

class FakeFileBrowser final : public FileBrowser {
 public:
  std::vector<std::string> selected;
  void selectFile(const std::string& path) override { selected.push_back(path); }
};

// Takes files out of the memory's folders, unless told to fail.
class FakeTrash final : public Trash {
 public:
  explicit FakeTrash(MemoryFiles& files) : files_(files) {}
  std::optional<std::string> failure;
  std::vector<std::string> trashed;
  [[nodiscard]] Result<Done> trashItem(const std::string& path) override {
    if (files_.touched) files_.touched(path);
    if (failure) return Error{*failure};
    files_.content.erase(path);
    trashed.push_back(path);
    return Done{};
  }

 private:
  MemoryFiles& files_;
};

class FakeSounds final : public Sounds {
 public:
  std::vector<Sound> played;
  bool silent = false;  // no sound can be had
  void play(Sound sound, OnFailure onFailure) override {
    played.push_back(sound);
    if (silent && onFailure) onFailure("no sound theme");
  }
};

class FakeFreeMemory final : public FreeMemory {
 public:
  std::int64_t megabytes = 8000;
  bool fails = false;
  [[nodiscard]] Result<std::int64_t> freeAndReclaimableMB() const override {
    if (fails) return Error{"5"};
    return megabytes;
  }
};

// Numbers that a test lays out beforehand, then those of a seeded generator.
class ScriptedRandom final : public RandomSource {
 public:
  std::vector<std::uint32_t> script;
  [[nodiscard]] std::uint32_t random() override {
    if (next_ < script.size()) return script[next_++];
    return twister_.random();
  }
  void seed(std::uint64_t seed) override { twister_.seed(seed); }

 private:
  std::size_t next_ = 0;
  TwisterRandom twister_;
};

}  // namespace lumivane
