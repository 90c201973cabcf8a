// The real companion program in a home of its own, with a few painted pictures to work on.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QColor>
#include <QImage>

#include "tests/support/RunProgram.h"

namespace lumivane {

class LumivaneTool : public testing::Test {
 protected:
  LumivaneTool() {
    for (const auto& folder : {home_, pictures_, scratch_}) std::filesystem::create_directories(folder);
  }

  [[nodiscard]] ProgramAnswer run(std::vector<std::string> words) {
    const char* program = std::getenv("LUMIVANE_TOOL");
    words.insert(words.begin(), program == nullptr ? "LUMIVANE_TOOL is not set" : program);
    return runProgram(words, environment_, pictures_.parent_path(), scratch_);
  }

  // A picture of noise, so that its file is not too small to be collected.
  static void paint(const std::filesystem::path& path, int width = 640, int height = 480) {
    std::filesystem::create_directories(path.parent_path());
    QImage image(width, height, QImage::Format_RGB32);
    unsigned state = 1;
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) image.setPixel(x, y, state = state * 1664525U + 1013904223U);
    }
    ASSERT_TRUE(image.save(QString::fromStdString(path.string()))) << path;
  }

  [[nodiscard]] std::filesystem::path settingsFile(const std::string& token) const {
    return home_ / ".config/lumivane" / ("de.orvik.LumivaneApp." + token + ".plist");
  }
  [[nodiscard]] std::filesystem::path listFile(const std::string& token) const {
    return home_ / ".local/share/lumivane" / ("LumivaneImageList." + token + ".plist");
  }
  [[nodiscard]] std::filesystem::path recordFile(const std::string& token) const {
    return home_ / ".local/share/lumivane" / ("LumivaneLastRunInfo." + token + ".plist");
  }

  const TemporaryFolder folder_;
  const std::filesystem::path home_ = folder_.path() / "home";
  const std::filesystem::path pictures_ = folder_.path() / "pictures";
  const std::filesystem::path scratch_ = folder_.path() / "scratch";
  std::map<std::string, std::string> environment_{{"HOME", home_.string()}, {"PATH", "/usr/bin:/bin"}};
};

}  // namespace lumivane
