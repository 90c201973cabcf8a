// The main function of tests with widgets: off the screen unless the test's environment says otherwise, and looking
// the same on every desktop.
#include <gtest/gtest.h>

#include <QApplication>

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  ::testing::InitGoogleTest(&argc, argv);
  QApplication::setDesktopSettingsAware(false);
  QApplication::setStyle("Fusion");
  const QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication::setCursorFlashTime(0);
  return RUN_ALL_TESTS();
}
