// When processes are started, kept and given up, in virtual time.
#include <gtest/gtest.h>

#include "imaging/PictureLoading.h"
#include "imaging/process/ProcessDimensions.h"
#include "imaging/process/ProcessImageDecoder.h"
#include "tests/support/FakeChildProgram.h"
#include "tests/support/RecordingLog.h"

namespace lumivane {
namespace {

using Message = FakeChildPrograms::Message;
using Messages = std::vector<Message>;

constexpr std::string_view kDeadly = "/deadly";

class DecoderProcessesTest : public testing::Test {
 protected:
  DecoderProcessesTest() {
    programs_.greeting = {encoded(DecoderAnswer(HelloAnswer{kDecoderProtocol, true, true}))};
  }

  // As the name of the picture says: it kills, hangs, is nonsense, or is a picture of one pixel.
  Messages answer(std::span<const std::byte> message) {
    const auto request = requestIn(message);
    if (const auto* open = std::get_if<OpenRequest>(&*request)) return opened(*open);
    if (const auto* decode = std::get_if<DecodeRequest>(&*request))
      return {encoded(DecoderAnswer(MemoryWish{decode->request, 4096}))};
    if (const auto* loan = std::get_if<MemoryLoan>(&*request))
      return {encoded(DecoderAnswer(DecodeAnswer{loan->request, true, {1, 1}, 1, true}))};
    if (const auto* measure = std::get_if<MeasureRequest>(&*request)) return measured(*measure);
    closed_ += std::holds_alternative<CloseRequest>(*request) ? 1 : 0;
    return {};
  }

  Messages opened(const OpenRequest& open) {
    asked_.push_back(open.path);
    if (open.path.starts_with(kDeadly)) return {Message()};
    if (open.path.starts_with("/hangs")) return {};
    if (open.path.starts_with("/nonsense")) return {{std::byte{99}}};
    OpenAnswer answer{open.request, open.path != "/gone", ImageSourceStatus::Complete, PropertyDictionary{}};
    answer.properties->pixelWidth = answer.properties->pixelHeight = 1;
    return {encoded(DecoderAnswer(answer))};
  }

  Messages measured(const MeasureRequest& measure) {
    MeasureAnswer answer{measure.request, {}};
    for (const std::string& path : measure.paths) {
      asked_.push_back(path);
      if (path.starts_with(kDeadly)) return {Message()};
      if (path.starts_with("/hangs")) return {};
      answer.sizes.emplace_back(SizePx{3, 4});
    }
    return {encoded(DecoderAnswer(answer))};
  }

  bool loads(const std::string& path) { return loadPicture(decoder_, path, {}).picture.has_value(); }

  std::vector<std::string> messagesOf(const std::string& path) {
    std::vector<std::string> texts;
    for (const LoadMessage& message : loadPicture(decoder_, path, {}).messages) texts.push_back(message.text);
    return texts;
  }

  VirtualClock clock_;
  RecordingLog log_;
  FakeMemories memories_;
  std::vector<std::string> asked_;
  std::vector<Nanoseconds> pauses_;
  int closed_ = 0;
  FakeChildPrograms programs_{clock_, [this](std::span<const std::byte> message) { return answer(message); }};
  DecoderProcesses processes_{programs_, memories_, clock_, log_, DecoderLimits{}, [this](Nanoseconds pause) {
                                pauses_.push_back(pause);
                                clock_.advance(pause);
                              }};
  ProcessImageDecoder decoder_{processes_};
  ProcessDimensions dimensions_{processes_};
};

TEST_F(DecoderProcessesTest, no_process_before_the_first_picture_and_one_for_all) {
  EXPECT_EQ(programs_.started, 0);
  for (int i = 0; i < 10; ++i) EXPECT_TRUE(loads("/" + std::to_string(i)));
  EXPECT_EQ(programs_.started, 1);
  EXPECT_EQ(closed_, 10);
  EXPECT_TRUE(log_.entries().empty());
}

TEST_F(DecoderProcessesTest, pictures_open_at_the_same_time_have_processes_of_their_own) {
  {
    const auto first = decoder_.open("/1");
    const auto second = decoder_.open("/2");
    EXPECT_EQ(programs_.started, 2);
    EXPECT_TRUE(first->thumbnail(8192));
    EXPECT_TRUE(second->thumbnail(8192));
  }
  const auto third = decoder_.open("/3");
  EXPECT_EQ(programs_.started, 2);
}

TEST_F(DecoderProcessesTest, few_processes_are_kept_when_many_were_needed) {
  {
    std::vector<std::unique_ptr<ImageSource>> sources;
    for (std::size_t i = 0; i < DecoderLimits{}.processes; ++i) sources.push_back(decoder_.open("/1"));
    EXPECT_EQ(programs_.alive, static_cast<int>(DecoderLimits{}.processes));
  }
  EXPECT_EQ(programs_.alive, static_cast<int>(DecoderLimits{}.idle));
}

TEST_F(DecoderProcessesTest, a_file_that_cannot_be_opened_is_gone) {
  EXPECT_EQ(messagesOf("/gone"), (std::vector<std::string>{"Image gone: ", "", "Image gone: /gone!"}));
  EXPECT_EQ(decoder_.open(""), nullptr);
  EXPECT_EQ(decoder_.open(std::string(5000, 'a')), nullptr);
  EXPECT_EQ(decoder_.open(std::string("/a\0b", 4)), nullptr);
  EXPECT_EQ(asked_, std::vector<std::string>{"/gone"});
}

TEST_F(DecoderProcessesTest, a_deadly_picture_fails_and_the_next_one_is_shown) {
  EXPECT_EQ(messagesOf("/deadly"), std::vector<std::string>{"Image source status: -6 !\n"});
  EXPECT_TRUE(log_.has("The decoder process ended while it opened /deadly", LogLevel::Error));
  EXPECT_TRUE(loads("/fine"));
  EXPECT_EQ(programs_.started, 2);
  EXPECT_EQ(programs_.alive, 1);
}

TEST_F(DecoderProcessesTest, a_picture_that_hangs_fails_when_its_time_is_up) {
  const MediaTime before = clock_.now();
  EXPECT_FALSE(loads("/hangs"));
  EXPECT_EQ(clock_.now() - before, DecoderLimits{}.picture);
  EXPECT_EQ(programs_.alive, 0);
  EXPECT_TRUE(log_.has("The decoder process took too long while it opened /hangs", LogLevel::Error));
}

TEST_F(DecoderProcessesTest, nonsense_ends_the_process) {
  EXPECT_FALSE(loads("/nonsense"));
  EXPECT_EQ(programs_.alive, 0);
  EXPECT_TRUE(log_.has("The decoder process answered nonsense while it opened /nonsense", LogLevel::Error));
}

TEST_F(DecoderProcessesTest, a_twice_deadly_picture_is_not_tried_again) {
  for (int i = 0; i < 5; ++i) {
    EXPECT_FALSE(loads("/deadly"));
    EXPECT_TRUE(loads("/fine"));
  }
  EXPECT_EQ(std::count(asked_.begin(), asked_.end(), "/deadly"), 2);
  EXPECT_EQ(log_.count("Not tried again, it ended the decoder process before: /deadly"), 3U);
}

TEST_F(DecoderProcessesTest, the_third_death_in_a_row_slows_the_next_start) {
  for (int i = 0; i < 3; ++i) EXPECT_FALSE(loads(std::string(kDeadly) + std::to_string(i)));
  EXPECT_TRUE(pauses_.empty());
  EXPECT_TRUE(loads("/fine"));
  EXPECT_EQ(pauses_, std::vector<Nanoseconds>{kFirstWait});
}

TEST_F(DecoderProcessesTest, no_job_waits_longer_than_a_second_for_its_process) {
  int started = 0;
  for (int i = 0; i < 60; ++i) {
    EXPECT_FALSE(loads(std::string(kDeadly) + std::to_string(i)));
    started = programs_.started;
  }
  EXPECT_LT(started, 10);  // within less than two seconds of virtual time
  for (const Nanoseconds pause : pauses_) EXPECT_LE(pause, DecoderLimits{}.pause);
  clock_.advance(kLongestWait);
  EXPECT_TRUE(loads("/fine"));
}

TEST_F(DecoderProcessesTest, a_program_that_is_not_there_is_told_and_not_tried_without_end) {
  programs_.cannotStart = true;
  for (int i = 0; i < 60; ++i) EXPECT_FALSE(loads("/fine"));
  const std::size_t tries = log_.count("The decoder process: there is no such program");
  EXPECT_GE(tries, 3U);
  EXPECT_LT(tries, 10U);
  EXPECT_FALSE(processes_.isDeadly("/fine"));
  programs_.cannotStart = false;
  clock_.advance(kLongestWait);
  EXPECT_TRUE(loads("/fine"));
}

TEST_F(DecoderProcessesTest, no_more_are_started_while_too_many_cannot_end) {
  programs_.endingNow = DecoderLimits{}.ending;
  EXPECT_FALSE(loads("/fine"));
  EXPECT_EQ(programs_.started, 0);
  programs_.endingNow = 0;
  EXPECT_TRUE(loads("/fine"));
}

TEST_F(DecoderProcessesTest, a_process_that_ended_in_its_sleep_is_no_pictures_fault) {
  EXPECT_TRUE(loads("/1"));
  programs_.greeting.push_back({});  // the next ones end when they have nothing to do
  { const auto other = std::pair(decoder_.open("/2"), decoder_.open("/3")); }
  EXPECT_TRUE(loads("/4"));
  EXPECT_FALSE(processes_.isDeadly("/4"));
}

TEST_F(DecoderProcessesTest, doors_that_stay_open_are_told_once) {
  programs_.greeting = {encoded(DecoderAnswer(HelloAnswer{kDecoderProtocol, false, true}))};
  { const auto two = std::pair(decoder_.open("/2"), decoder_.open("/3")); }
  EXPECT_EQ(log_.entries(), (std::vector<RecordingLog::Entry>{
                                {"The decoder process does without Landlock, which this system does not have",
                                 LogLevel::Information}}));
}

TEST_F(DecoderProcessesTest, a_prepared_process_is_the_first_one) {
  processes_.prepare();
  EXPECT_EQ(programs_.started, 1);
  EXPECT_TRUE(loads("/1"));
  EXPECT_EQ(programs_.started, 1);
}

TEST_F(DecoderProcessesTest, sizes_are_measured_in_batches) {
  const std::vector<std::string> paths(200, "/fine");
  const auto sizes = dimensions_.measure(paths);
  EXPECT_EQ(sizes, (std::vector<std::optional<SizePx>>(200, SizePx{3, 4})));
  EXPECT_EQ(programs_.started, 1);
}

TEST_F(DecoderProcessesTest, one_deadly_file_does_not_cost_the_others_their_sizes) {
  const std::optional<SizePx> size(SizePx{3, 4});
  EXPECT_EQ(dimensions_.measure({"/a", "/deadly", "/b"}),
            (std::vector<std::optional<SizePx>>{size, kNoPicture, size}));
  EXPECT_EQ(dimensions_.measure({std::string(5000, 'a'), "/c", ""}),
            (std::vector<std::optional<SizePx>>{std::nullopt, size, std::nullopt}));
}

TEST_F(DecoderProcessesTest, a_disk_that_does_not_answer_is_given_up_soon) {
  std::vector<std::string> paths(50, "/hangs");
  for (std::size_t i = 0; i < paths.size(); ++i) paths[i] += std::to_string(i);
  const MediaTime before = clock_.now();
  EXPECT_EQ(dimensions_.measure(paths), std::vector<std::optional<SizePx>>(50));
  EXPECT_LE(clock_.now() - before, 4 * DecoderLimits{}.picture);
}

}  // namespace
}  // namespace lumivane
