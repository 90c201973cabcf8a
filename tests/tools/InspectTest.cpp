#include <sys/stat.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "tests/tools/LumivaneToolFixture.h"

namespace lumivane {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;
using testing::HasSubstr;

class Inspect : public LumivaneTool {
 protected:
  [[nodiscard]] std::vector<Json> objects(const ProgramAnswer& answer) {
    std::vector<Json> all;
    std::istringstream lines(answer.out);
    for (std::string line; std::getline(lines, line);) all.push_back(Json::parse(line));
    return all;
  }
};

TEST_F(Inspect, TellsInJsonWhatBecomesOfEachPicture) {
  paint(pictures_ / "a.png", 640, 480);
  paint(pictures_ / "small.jpg", 400, 200);
  std::ofstream(pictures_ / "text.jpg") << "This is not a picture.\n";
  const std::string p = pictures_.string();
  const ProgramAnswer answer = run({"inspect", "--json", p + "/a.png", p + "/small.jpg", p + "/text.jpg"});
  EXPECT_EQ(answer.status, 0) << answer.err;
  const std::vector<Json> all = objects(answer);
  ASSERT_EQ(all.size(), 3U);
  EXPECT_EQ(all[0],
            Json::parse(R"({"path": ")" + p + R"(/a.png", "accepted": true, "reason": null, "width": 640,
    "height": 480, "orientation": 1, "latitude": null, "longitude": null, "place": null, "keywords": null, "caption": null,
    "date": null, "infoLines": [")" +
                        p + R"(/a.png"], "decodedWidth": 640, "decodedHeight": 480})"));
  EXPECT_EQ(all[1]["accepted"], false);
  EXPECT_EQ(all[1]["reason"], "Image smaller than 300 pixels: " + p + "/small.jpg");
  EXPECT_EQ(all[1]["width"], 400);
  EXPECT_EQ(all[2]["accepted"], false);
  EXPECT_THAT(all[2]["reason"].get<std::string>(), HasSubstr("Image source status: "));
}

TEST_F(Inspect, TheSmallestSizeIsTheDisplaysOrTheGivenOne) {
  paint(pictures_ / "a.png", 100, 100);
  const std::string path = (pictures_ / "a.png").string();
  EXPECT_EQ(objects(run({"inspect", "--json", path}))[0]["accepted"], false);
  EXPECT_EQ(objects(run({"inspect", "--json", "--min-size", "100", path}))[0]["accepted"], true);
  EXPECT_EQ(objects(run({"inspect", "--json", "--min-size=101", path}))[0]["accepted"], false);
  EXPECT_EQ(run({"settings", "ExcludeSize", "60"}).status, 0);
  EXPECT_EQ(objects(run({"inspect", "--json", path}))[0]["accepted"], true);
}

TEST_F(Inspect, PreviewsAreAtMost256Pixels) {
  paint(pictures_ / "wide.png", 1024, 512);
  paint(pictures_ / "other" / "wide.png", 300, 600);
  paint(pictures_ / "little.jpg", 60, 50);
  const fs::path previews = folder_.path() / "made" / "previews";
  const std::string p = pictures_.string();
  const ProgramAnswer answer = run({"inspect", "--min-size=1", "--preview", previews.string(),
                                    p + "/wide.png", p + "/other/wide.png", p + "/little.jpg"});
  EXPECT_EQ(answer.status, 0) << answer.err;
  const auto sizeOf = [&](const char* name) {
    return QImage(QString::fromStdString((previews / name).string())).size();
  };
  EXPECT_EQ(sizeOf("wide.png.png"), QSize(256, 128));
  EXPECT_EQ(sizeOf("wide.png.2.png"), QSize(128, 256));
  EXPECT_EQ(sizeOf("little.jpg.png"), QSize(60, 50));
  EXPECT_EQ(std::distance(fs::directory_iterator(previews), {}), 3);
}

TEST_F(Inspect, WhatCannotBeOpenedFailsButDoesNotEndTheRest) {
  paint(pictures_ / "a.png");
  ASSERT_EQ(::mkfifo((pictures_ / "pipe.jpg").c_str(), 0600), 0);
  const std::string p = pictures_.string();
  const ProgramAnswer answer =
      run({"inspect", "--json", p + "/gone.jpg", p + "/pipe.jpg", p, "/dev/zero", "", p + "/a.png"});
  EXPECT_EQ(answer.status, 1);
  const std::vector<Json> all = objects(answer);
  ASSERT_EQ(all.size(), 6U);
  for (std::size_t i = 0; i < 5; ++i) EXPECT_EQ(all[i]["accepted"], false) << i;
  EXPECT_EQ(all[0]["reason"], "Image gone: " + p + "/gone.jpg!");
  EXPECT_EQ(all[5]["accepted"], true);
  EXPECT_THAT(answer.err, HasSubstr("gone.jpg cannot be opened"));
}

TEST_F(Inspect, AwkwardNamesAreShownSafely) {
  for (const char* name : {"latin1-\xE9.png", "bell\x07\n.png", "-rf.png", "\xE2\x80\xAEgpj.png"}) {
    paint(pictures_ / "plain.png");
    fs::rename(pictures_ / "plain.png", pictures_ / name);
    const ProgramAnswer json = run({"inspect", "--json", "--", (pictures_ / name).string()});
    EXPECT_EQ(json.status, 0) << json.err;
    EXPECT_EQ(objects(json).at(0)["accepted"], true);
    const ProgramAnswer text = run({"inspect", "--", (pictures_ / name).string()});
    EXPECT_EQ(text.status, 0);
    EXPECT_THAT(text.out, testing::Not(testing::AnyOf(HasSubstr("\x07"), HasSubstr("\xE9"),
                                                      HasSubstr("\xE2\x80\xAE"))));
  }
}

TEST_F(Inspect, WrongUsageIsToldApart) {
  EXPECT_EQ(run({"inspect"}).status, 2);
  EXPECT_EQ(run({"inspect", "--min-size", "big", "a"}).status, 2);
  EXPECT_EQ(run({"inspect", "--min-size=-1", "a"}).status, 2);
  EXPECT_EQ(run({"inspect", "--bogus", "a"}).status, 2);
  paint(pictures_ / "a.png");
  const std::string path = (pictures_ / "a.png").string();
  EXPECT_EQ(run({"inspect", "--preview", path, path}).status, 1);
}

}  // namespace
}  // namespace lumivane
