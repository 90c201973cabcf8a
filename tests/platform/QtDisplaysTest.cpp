#include "platform/linux/QtDisplays.h"

#include <QGuiApplication>
#include <QScreen>

namespace lumivane {
namespace {

TEST(QtDisplaysTest, NumbersTheScreensFromOne) {
  const QtDisplays displays;
  const std::vector<Display> attached = displays.attached();
  const QList<QScreen*> screens = QGuiApplication::screens();
  ASSERT_EQ(attached.size(), static_cast<std::size_t>(screens.size()));
  ASSERT_FALSE(attached.empty());
  for (std::size_t i = 0; i < attached.size(); ++i) {
    const QScreen* screen = screens[static_cast<qsizetype>(i)];
    EXPECT_EQ(attached[i].number, i + 1);
    EXPECT_EQ(displayNumberOf(screen), i + 1);
    EXPECT_FALSE(attached[i].name.empty());
    EXPECT_EQ(attached[i].size, (SizePt{static_cast<double>(screen->size().width()),
                                        static_cast<double>(screen->size().height())}));
    EXPECT_EQ(attached[i].scale, screen->devicePixelRatio());
  }
}

TEST(QtDisplaysTest, AScreenThatIsGoneHasNoNumber) {
  EXPECT_EQ(displayNumberOf(nullptr), 0U);
}

TEST(QtDisplaysTest, TellsEveryoneOfAChange) {
  QtDisplays displays;
  int first = 0;
  int second = 0;
  displays.onChange([&] { ++first; });
  displays.onChange([&] { ++second; });
  emit QGuiApplication::primaryScreen()->geometryChanged(QRect(0, 0, 1, 1));
  EXPECT_EQ(first, 1);
  EXPECT_EQ(second, 1);
}

}  // namespace
}  // namespace lumivane
