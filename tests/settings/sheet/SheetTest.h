// A preferences sheet on the off-screen platform, and a user's hands on it.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QScrollArea>
#include <QTabWidget>
#include <QTest>

#include "settings/sheet/QtConfigureSheet.h"
#include "tests/support/QtWaiting.h"
#include "tests/support/RecordingSheetActions.h"

namespace lumivane {

// Every control of the sheet with its name.
#define LUMIVANE_CONTROL(name) \
  std::pair {                  \
    SheetControl::name, #name  \
  }
inline const std::vector<std::pair<SheetControl, const char*>> kSheetControls{
    LUMIVANE_CONTROL(durationPerImageView_),
    LUMIVANE_CONTROL(initZoomInFactorView_),
    LUMIVANE_CONTROL(excludeSizeView_),
    LUMIVANE_CONTROL(excludekBView_),
    LUMIVANE_CONTROL(fontSizeView_),
    LUMIVANE_CONTROL(infoDelayView_),
    LUMIVANE_CONTROL(skipPatternsView_),
    LUMIVANE_CONTROL(useSpotlightView_),
    LUMIVANE_CONTROL(useDirectorySearchView_),
    LUMIVANE_CONTROL(useAlbumView_),
    LUMIVANE_CONTROL(useDirectoryTreeView_),
    LUMIVANE_CONTROL(showImagePathView_),
    LUMIVANE_CONTROL(displayFilenameView_),
    LUMIVANE_CONTROL(showFileExtensionView_),
    LUMIVANE_CONTROL(showImageInfoView_),
    LUMIVANE_CONTROL(zoomIsOnView_),
    LUMIVANE_CONTROL(kenBurnsView_),
    LUMIVANE_CONTROL(dontRandomizeView_),
    LUMIVANE_CONTROL(startWithRandomView_),
    LUMIVANE_CONTROL(allowBlackBordersView_),
    LUMIVANE_CONTROL(crossDissolveView_),
    LUMIVANE_CONTROL(enableDeleteView_),
    LUMIVANE_CONTROL(blackBordersThresholdSlider_),
    LUMIVANE_CONTROL(crossDissolveDurationSlider_),
    LUMIVANE_CONTROL(currentScreenView_),
    LUMIVANE_CONTROL(albumView_),
    LUMIVANE_CONTROL(applyView_),
    LUMIVANE_CONTROL(changeDirectoryView_),
    LUMIVANE_CONTROL(rescanDirectoryView_),
    LUMIVANE_CONTROL(directoryPathView_),
    LUMIVANE_CONTROL(num_images_),
    LUMIVANE_CONTROL(version_label_),
    LUMIVANE_CONTROL(initZoomInFactorLabelView_),
    LUMIVANE_CONTROL(excludekBLabelView_),
    LUMIVANE_CONTROL(skipPatternsLabelView_),
};
#undef LUMIVANE_CONTROL

class SheetTest : public ::testing::Test {
 protected:
  SheetTest() {
    sheet_.setActions(&actions_);
    sheet_.begin();
    EXPECT_TRUE(waitUntil([&] { return sheet_.dialog().isActiveWindow(); }));
  }

  QTabWidget& pages() { return *sheet_.dialog().findChild<QTabWidget*>("pages_"); }

  // Brings the page forward that the control is on.
  QWidget& reach(QWidget& widget) {
    for (int page = 0; page < pages().count(); ++page) {
      if (pages().widget(page)->isAncestorOf(&widget)) pages().setCurrentIndex(page);
    }
    runPendingEvents();
    return widget;
  }
  QWidget& reach(SheetControl control) { return reach(sheet_.widget(control)); }

  // In the middle of small widgets; on the mark of check boxes and radio buttons, which begin at their left.
  void click(QWidget& widget) {
    reach(widget);
    const bool marked = widget.inherits("QCheckBox") || widget.inherits("QRadioButton");
    QTest::mouseClick(&widget, Qt::LeftButton, Qt::NoModifier,
                      marked ? QPoint(widget.height() / 2, widget.height() / 2) : widget.rect().center());
  }
  void click(SheetControl control) { click(sheet_.widget(control)); }

  void typeOver(SheetControl control, const QString& text) {
    QWidget& field = reach(control);
    field.setFocus();
    QTest::keySequence(&field, QKeySequence::SelectAll);
    QTest::keyClicks(&field, text);
  }

  // What the sheet told since the last time.
  std::vector<std::string> told() { return std::exchange(actions_.calls, {}); }

  RecordingSheetActions actions_;
  PatternCheck check_;
  QtConfigureSheet sheet_{[] { return nullptr; },
                          [this](const std::string& text) -> std::optional<PatternFault> {
                            return check_ ? check_(text) : std::nullopt;
                          }};
};

}  // namespace lumivane
