#include "compositor/render/SnapshotMailbox.h"

#include <gtest/gtest.h>

#include <future>
#include <thread>

namespace lumivane {
namespace {

constexpr Nanoseconds kNow{0};
constexpr Nanoseconds kLong = std::chrono::seconds{60};

std::shared_ptr<const FrameSnapshot> snapshot(double scale) {
  return std::make_shared<const FrameSnapshot>(FrameSnapshot{nullptr, {}, scale});
}

TEST(SnapshotMailbox, theLatestSnapshotWins) {
  SnapshotMailbox mailbox;
  mailbox.setExposed(true);
  mailbox.publish(snapshot(1));
  mailbox.publish(snapshot(2));
  EXPECT_EQ(mailbox.wait(std::nullopt).snapshot->scale, 2);
  mailbox.frameOver();
  EXPECT_EQ(mailbox.wait(kNow).snapshot, nullptr);
}

TEST(SnapshotMailbox, handsNothingOutWhileNotExposed) {
  SnapshotMailbox mailbox;
  mailbox.publish(snapshot(1));
  auto waiting = std::async(std::launch::async, [&] { return mailbox.wait(kNow); });
  mailbox.setExposed(true);
  const auto news = waiting.get();
  EXPECT_TRUE(news.exposed);
  EXPECT_EQ(news.snapshot->scale, 1);
}

TEST(SnapshotMailbox, exposureAsksForARedrawOnce) {
  SnapshotMailbox mailbox;
  mailbox.setExposed(true);
  EXPECT_TRUE(mailbox.wait(std::nullopt).redraw);
  mailbox.frameOver();
  EXPECT_FALSE(mailbox.wait(kNow).redraw);
  mailbox.frameOver();
  mailbox.setExposed(true);
  EXPECT_TRUE(mailbox.wait(std::nullopt).redraw);
  mailbox.frameOver();
}

TEST(SnapshotMailbox, aSnapshotWakesTheWaiting) {
  SnapshotMailbox mailbox;
  mailbox.setExposed(true);
  static_cast<void>(mailbox.wait(kNow));
  mailbox.frameOver();
  auto waiting = std::async(std::launch::async, [&] { return mailbox.wait(kLong); });
  mailbox.publish(snapshot(3));
  EXPECT_EQ(waiting.get().snapshot->scale, 3);
}

TEST(SnapshotMailbox, stopWakesTheWaitingAndIsSeenAlsoLater) {
  SnapshotMailbox mailbox;
  auto waiting = std::async(std::launch::async, [&] { return mailbox.wait(std::nullopt); });
  mailbox.stop();
  EXPECT_TRUE(waiting.get().stopped);
  EXPECT_TRUE(mailbox.wait(std::nullopt).stopped);
  mailbox.pause(kLong);  // returns at once
}

TEST(SnapshotMailbox, coveringTheSurfaceWaitsForTheFrameBeingDrawn) {
  SnapshotMailbox mailbox;
  mailbox.setExposed(true);
  std::promise<void> drawing;
  std::promise<void> goOn;
  std::atomic<bool> over = false;
  std::thread render([&] {
    static_cast<void>(mailbox.wait(std::nullopt));
    drawing.set_value();
    goOn.get_future().wait();
    over = true;
    mailbox.frameOver();
  });
  drawing.get_future().wait();
  auto covering = std::async(std::launch::async, [&] {
    mailbox.setExposed(false);
    return over.load();
  });
  goOn.set_value();
  EXPECT_TRUE(covering.get());
  render.join();
}

TEST(SnapshotMailbox, coveringTheSurfaceReturnsAtOnceWhenNothingIsDrawn) {
  SnapshotMailbox mailbox;
  mailbox.setExposed(true);
  mailbox.setExposed(false);
  mailbox.stop();
  EXPECT_FALSE(mailbox.wait(std::nullopt).exposed);
}

TEST(SnapshotMailbox, coveringEndsAPause) {
  SnapshotMailbox mailbox;
  mailbox.setExposed(true);
  auto pausing = std::async(std::launch::async, [&] { mailbox.pause(kLong); });
  mailbox.setExposed(false);
  pausing.get();
}

TEST(SnapshotMailbox, aSnapshotDoesNotCutAPauseShort) {
  SnapshotMailbox mailbox;
  mailbox.setExposed(true);
  mailbox.publish(snapshot(1));
  const auto begun = std::chrono::steady_clock::now();
  mailbox.pause(std::chrono::milliseconds{5});
  EXPECT_GE(std::chrono::steady_clock::now() - begun, std::chrono::milliseconds{5});
}

TEST(SnapshotMailbox, dropsAnUnreadSnapshotAtOnce) {
  SnapshotMailbox mailbox;
  auto first = snapshot(1);
  const std::weak_ptr<const FrameSnapshot> watch = first;
  mailbox.publish(std::move(first));
  mailbox.publish(snapshot(2));
  EXPECT_TRUE(watch.expired());
}

}  // namespace
}  // namespace lumivane
