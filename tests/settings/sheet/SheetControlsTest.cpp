// The controls by themselves: what can be read from them, what they look like, how they are reached.
#include <QAbstractButton>
#include <QGroupBox>
#include <QLabel>
#include <QProgressBar>
#include <QScreen>
#include <QWheelEvent>
#include <set>

#include "settings/sheet/RangeSlider.h"
#include "tests/settings/sheet/SheetTest.h"

namespace lumivane {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using enum SheetControl;

class SheetControlsTest : public SheetTest {
 protected:
  QLabel& label(const char* name) { return *sheet_.dialog().findChild<QLabel*>(name); }
};

TEST_F(SheetControlsTest, EachIsNamedForTheProgramAndForThoseWhoCannotSee) {
  for (const auto& [control, name] : kSheetControls) {
    const QWidget& widget = sheet_.widget(control);
    EXPECT_EQ(widget.objectName().toStdString(), name);
    const auto* text = qobject_cast<const QLabel*>(&widget);
    const bool namesAnother = text != nullptr && text->buddy() != nullptr;
    EXPECT_TRUE(namesAnother || !widget.accessibleName().isEmpty()) << name;
  }
}

TEST_F(SheetControlsTest, EachThatTakesInputSaysWhatItDoes) {
  for (const auto& [control, name] : kSheetControls) {
    const QWidget& widget = sheet_.widget(control);
    if (widget.focusPolicy() != Qt::NoFocus) {
      EXPECT_FALSE(widget.toolTip().isEmpty()) << name;
    }
  }
}

TEST_F(SheetControlsTest, EveryFieldHasALabelWithALetter) {
  std::set<const QWidget*> labelled;
  for (const QLabel* text : sheet_.dialog().findChildren<QLabel*>()) {
    if (text->buddy() != nullptr && text->text().contains('&')) labelled.insert(text->buddy());
  }
  for (const SheetControl control :
       {durationPerImageView_, initZoomInFactorView_, excludeSizeView_, excludekBView_, fontSizeView_,
        infoDelayView_, skipPatternsView_, blackBordersThresholdSlider_, crossDissolveDurationSlider_,
        currentScreenView_}) {
    EXPECT_THAT(labelled, Contains(&sheet_.widget(control)));
  }
}

// The letters that Alt takes on what is shown now, one entry for each widget that asks for one.
std::multiset<char> lettersShown(const QDialog& dialog, const QTabWidget& pages) {
  std::multiset<char> letters;
  const auto note = [&](const QString& text) {
    const auto letter = QKeySequence::mnemonic(text);
    if (!letter.isEmpty()) letters.insert(letter.toString().back().toLatin1());
  };
  for (int page = 0; page < pages.count(); ++page) note(pages.tabText(page));
  for (const auto* button : dialog.findChildren<QAbstractButton*>()) {
    if (button->isVisible()) note(button->text());
  }
  for (const auto* text : dialog.findChildren<QLabel*>()) {
    if (text->isVisible() && text->buddy() != nullptr) note(text->text());
  }
  for (const auto* group : dialog.findChildren<QGroupBox*>()) {
    if (group->isVisible()) note(group->title());
  }
  return letters;
}

TEST_F(SheetControlsTest, NoLetterServesTwiceOnAPage) {
  for (int page = 0; page < pages().count(); ++page) {
    pages().setCurrentIndex(page);
    const std::multiset<char> letters = lettersShown(sheet_.dialog(), pages());
    EXPECT_GT(letters.size(), 12U);
    for (const char letter : letters) EXPECT_EQ(letters.count(letter), 1U) << letter << " on page " << page;
  }
}

TEST_F(SheetControlsTest, TabReachesEverythingOnAPage) {
  for (int page = 0; page < pages().count(); ++page) {
    pages().setCurrentIndex(page);
    pages().setFocus();
    std::set<const QWidget*> reached;
    do {
      reached.insert(QApplication::focusWidget());
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    } while (reached.count(QApplication::focusWidget()) == 0);
    for (const auto* widget : sheet_.dialog().findChildren<QWidget*>()) {
      const bool takesKeys = (widget->focusPolicy() & Qt::TabFocus) != 0 && widget->focusProxy() == nullptr;
      // Of a pair of radio buttons, Tab reaches the one that is on; the arrow keys reach the other one.
      if (!widget->isVisible() || !takesKeys || widget->inherits("QRadioButton")) continue;
      EXPECT_THAT(reached, Contains(widget)) << widget->objectName().toStdString() << " on page " << page;
    }
  }
}

TEST_F(SheetControlsTest, KeepsAWayOutOnASmallScreen) {
  // 1280x720 at 200 %.
  EXPECT_LE(sheet_.dialog().minimumSizeHint().width(), 600);
  EXPECT_LE(sheet_.dialog().minimumSizeHint().height(), 330);
  for (int page = 0; page < pages().count(); ++page) {
    auto* area = dynamic_cast<QScrollArea*>(pages().widget(page));
    ASSERT_NE(area, nullptr);
    EXPECT_LE(area->widget()->minimumSizeHint().width(), 560) << "page " << page << " would scroll sideways";
  }
}

TEST_F(SheetControlsTest, ABytePerByteCopyOfWhatWasNotEdited) {
  const std::string awkward = ".*\xFF\r\n\n\xE2\x80\xA9 x\xC2\xA0y\t";
  sheet_.setText(skipPatternsView_, awkward);
  EXPECT_EQ(sheet_.text(skipPatternsView_), awkward);
  const std::string path = "/pictures/\xFF/a\nb";
  sheet_.setText(directoryPathView_, path);
  EXPECT_EQ(sheet_.text(directoryPathView_), path);
  EXPECT_EQ(label("directoryPathView_").accessibleDescription(), "/pictures/\\xFF/a\\x0Ab");
}

TEST_F(SheetControlsTest, NonBreakingSpacesOutliveAnEdit) {
  sheet_.setText(skipPatternsView_, "a\xC2\xA0z");
  reach(skipPatternsView_).setFocus();
  QTest::keyClicks(&sheet_.widget(skipPatternsView_), "x");
  EXPECT_EQ(sheet_.text(skipPatternsView_), "xa\xC2\xA0z");
}

TEST_F(SheetControlsTest, APathThatLooksLikeMarkUpStaysAPath) {
  sheet_.setText(directoryPathView_, "/<b>pictures</b>");
  EXPECT_EQ(label("directoryPathView_").toolTip(), "<qt>/&lt;b&gt;pictures&lt;/b&gt;</qt>");
  EXPECT_EQ(label("directoryPathView_").textFormat(), Qt::PlainText);
}

TEST_F(SheetControlsTest, SlidersShowTheirNumber) {
  sheet_.setSlider(crossDissolveDurationSlider_, 5);
  EXPECT_EQ(label("crossDissolveDurationValueView_").text(), "5.0 s");
  sheet_.setSlider(blackBordersThresholdSlider_, 0.25F);
  EXPECT_EQ(label("blackBordersThresholdValueView_").text(), "0.25");
  // A number from elsewhere that the slider cannot reach is shown as it is.
  sheet_.setSlider(crossDissolveDurationSlider_, 25);
  EXPECT_EQ(label("crossDissolveDurationValueView_").text(), "25.0 s");
  EXPECT_EQ(dynamic_cast<RangeSlider&>(sheet_.widget(crossDissolveDurationSlider_)).value(), 95);
  sheet_.setSlider(crossDissolveDurationSlider_, std::numeric_limits<float>::quiet_NaN());
  EXPECT_EQ(label("crossDissolveDurationValueView_").text(), "0.5 s");
}

TEST_F(SheetControlsTest, ValuesTakeTheSameRoomWhateverTheyAre) {
  sheet_.setSlider(crossDissolveDurationSlider_, 1);
  const int narrow = label("crossDissolveDurationValueView_").sizeHint().width();
  sheet_.setSlider(crossDissolveDurationSlider_, 10);
  EXPECT_EQ(label("crossDissolveDurationValueView_").sizeHint().width(), narrow);
}

TEST_F(SheetControlsTest, TheWheelScrollsThePageRatherThanTurnTheSlider) {
  auto& slider = dynamic_cast<RangeSlider&>(reach(crossDissolveDurationSlider_));
  sheet_.setSlider(crossDissolveDurationSlider_, 5);
  const auto turn = [&] {
    QWheelEvent wheel(QPointF(5, 5), slider.mapToGlobal(QPointF(5, 5)), QPoint(), QPoint(0, 120),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&slider, &wheel);
  };
  pages().setFocus();
  turn();
  EXPECT_EQ(slider.number(), 5);
  EXPECT_THAT(told(), IsEmpty());
  slider.setFocus();
  turn();
  EXPECT_THAT(told(), ElementsAre("newCrossDissolveDuration"));
}

TEST_F(SheetControlsTest, ADisabledLabelTakesTheColourOfDisabledText) {
  QLabel& text = label("initZoomInFactorLabelView_");
  sheet_.setEnabled(initZoomInFactorLabelView_, false);
  EXPECT_EQ(text.palette().currentColorGroup(), QPalette::Disabled);
  sheet_.setEnabled(initZoomInFactorLabelView_, true);
  EXPECT_EQ(text.palette().currentColorGroup(), QPalette::Active);
}

TEST_F(SheetControlsTest, UnitsAndValuesGoWithTheirControl) {
  for (const auto& [control, companion] : std::vector<std::pair<SheetControl, const char*>>{
           {blackBordersThresholdSlider_, "blackBordersThresholdLabelView_"},
           {blackBordersThresholdSlider_, "blackBordersThresholdValueView_"},
           {initZoomInFactorView_, "initZoomInFactorUnit_"},
           {excludekBView_, "excludekBUnit_"}}) {
    sheet_.setEnabled(control, false);
    EXPECT_FALSE(label(companion).isEnabled()) << companion;
    sheet_.setEnabled(control, true);
    EXPECT_TRUE(label(companion).isEnabled()) << companion;
  }
}

TEST_F(SheetControlsTest, ADisabledControlTakesNoInput) {
  sheet_.setEnabled(crossDissolveView_, false);
  click(crossDissolveView_);
  sheet_.setEnabled(skipPatternsView_, false);
  typeOver(skipPatternsView_, "x");
  EXPECT_EQ(sheet_.text(skipPatternsView_), "");
  EXPECT_THAT(told(), IsEmpty());
}

TEST_F(SheetControlsTest, BothOfAPairOfRadioButtonsCanBeOff) {
  sheet_.setOn(useAlbumView_, true);
  sheet_.setOn(useAlbumView_, false);
  EXPECT_FALSE(sheet_.isOn(useAlbumView_));
  EXPECT_FALSE(sheet_.isOn(useDirectoryTreeView_));
}

TEST_F(SheetControlsTest, QuestionsThatDoNotFitGetEmptyAnswers) {
  EXPECT_EQ(sheet_.text(crossDissolveView_), "");
  EXPECT_FALSE(sheet_.isOn(durationPerImageView_));
  EXPECT_EQ(sheet_.selectedItem(durationPerImageView_), std::nullopt);
}

TEST_F(SheetControlsTest, TheBusySignIsShownOnlyWhileSomethingGoesOn) {
  auto* busy = sheet_.dialog().findChild<QProgressBar*>("img_gathering_progress_");
  const QSize before = sheet_.dialog().sizeHint();
  EXPECT_FALSE(busy->isVisible());
  sheet_.setProgressSpinning(true);
  EXPECT_TRUE(busy->isVisible());
  EXPECT_EQ(busy->maximum(), 0) << "its end is not known";
  EXPECT_EQ(sheet_.dialog().sizeHint(), before);
  sheet_.setProgressSpinning(false);
  EXPECT_FALSE(busy->isVisible());
}

TEST_F(SheetControlsTest, AFaultyPatternIsShownWhileItIsTyped) {
  check_ = [](const std::string& text) -> std::optional<PatternFault> {
    if (text.find('(') == std::string::npos) return std::nullopt;
    return PatternFault{2, "a round bracket has no counterpart"};
  };
  sheet_.setText(skipPatternsView_, "a");
  reach(skipPatternsView_).setFocus();
  auto& patterns = dynamic_cast<PatternsField&>(sheet_.widget(skipPatternsView_));
  patterns.moveCursor(QTextCursor::End);
  QTest::keyClick(&patterns, Qt::Key_Return);
  QTest::keyClicks(&patterns, "(");
  EXPECT_EQ(label("skipPatternsHintView_").text(), "Line 2: a round bracket has no counterpart.");
  EXPECT_FALSE(label("skipPatternsHintIcon_").pixmap().isNull());
  EXPECT_EQ(patterns.accessibleDescription(), "Line 2: a round bracket has no counterpart.");
  ASSERT_EQ(patterns.extraSelections().size(), 1);
  EXPECT_EQ(patterns.extraSelections()[0].cursor.selectedText(), "(");
  EXPECT_EQ(sheet_.text(skipPatternsView_), "a\n(") << "the text itself stays as it is";
  QTest::keyClick(&patterns, Qt::Key_Backspace);
  EXPECT_EQ(label("skipPatternsHintView_").text(), "");
  EXPECT_TRUE(label("skipPatternsHintIcon_").pixmap().isNull());
  EXPECT_THAT(patterns.extraSelections(), IsEmpty());
}

}  // namespace
}  // namespace lumivane
