#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QTextBlock>
#include <QTextBrowser>

#include "settings/sheet/QtConfigureSheet.h"
#include "settings/sheet/QtHelpPanel.h"
#include "settings/sheet/RichTextDocument.h"
#include "tests/support/QtWaiting.h"

namespace lumivane {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;

constexpr const char* kShipped = "Help_ReadMe_Changelog_LumivaneApp";

struct RecordingWorkspace final : Workspace {
  bool openUrl(const std::string& url) override {
    urls.push_back(url);
    return true;
  }
  std::vector<std::string> urls;
};

class HelpPanelTest : public ::testing::Test {
 protected:
  QTextBrowser& browser() { return *panel_.dialog().findChild<QTextBrowser*>(); }
  QListWidget& headings() { return *panel_.dialog().findChild<QListWidget*>(); }
  void open() {
    ASSERT_TRUE(panel_.loadDocument(kShipped).ok());
    show();
  }
  void show() {
    panel_.orderFront();
    ASSERT_TRUE(waitUntil([&] { return panel_.dialog().isActiveWindow(); }));
  }

  RecordingWorkspace workspace_;
  QtHelpPanel panel_{[] { return nullptr; }, workspace_};
};

TEST_F(HelpPanelTest, ShowsThePicturesOfItsDocument) {
  open();
  QStringList names;
  for (QTextBlock block = browser().document()->begin(); block.isValid(); block = block.next()) {
    for (auto piece = block.begin(); !piece.atEnd(); ++piece) {
      const QTextCharFormat format = piece.fragment().charFormat();
      if (format.isImageFormat()) names.append(format.toImageFormat().name());
    }
  }
  ASSERT_FALSE(names.isEmpty());
  for (const QString& name : names) {
    const auto image =
        browser().document()->resource(QTextDocument::ImageResource, QUrl(name)).value<QImage>();
    EXPECT_GT(image.width(), 250) << name.toStdString();
  }
}

TEST(ShowRichText, LeavesOutPicturesThatCannotBeRead) {
  QTextDocument document;
  RichText text;
  text.pictures = {{.png = "no PNG at all", .width = 10, .height = 10}};
  text.paragraphs = {{.spans = {{.text = "a"}, {.picture = 1}, {.picture = 7}, {.text = "b"}}}};
  showRichText(document, text, QPalette());
  EXPECT_EQ(document.toPlainText(), "ab");
}

TEST_F(HelpPanelTest, ShowsTheShippedDocument) {
  open();
  EXPECT_TRUE(browser().toPlainText().startsWith("Lumivane\n"));
  EXPECT_TRUE(browser().toPlainText().contains("Why one may be missing"));
  for (const char* rest : {"\\par", "{\\", "\\u", "\\'", "}"}) {
    EXPECT_FALSE(browser().toPlainText().contains(rest)) << rest << " was taken for text";
  }
  EXPECT_GT(headings().count(), 8);
  EXPECT_EQ(headings().item(2)->text(), "Keys");
}

TEST_F(HelpPanelTest, SaysWhyADocumentCannotBeShown) {
  open();
  const auto missing = panel_.loadDocument("NoSuchDocument");
  ASSERT_FALSE(missing.ok());
  EXPECT_EQ(missing.error(), "there is no document NoSuchDocument");
  EXPECT_EQ(browser().toPlainText(), "");
  EXPECT_EQ(headings().count(), 0);
  EXPECT_TRUE(panel_.loadDocument(kShipped).ok());
  EXPECT_NE(browser().toPlainText(), "");
}

TEST_F(HelpPanelTest, LoadingTheSameAgainKeepsThePlace) {
  open();
  headings().setCurrentRow(headings().count() - 1);
  const QTextCursor place = browser().textCursor();
  EXPECT_GT(place.position(), 0);
  ASSERT_TRUE(panel_.loadDocument(kShipped).ok());
  EXPECT_EQ(browser().textCursor(), place);
}

TEST_F(HelpPanelTest, AHeadingLeadsToItsPlace) {
  open();
  headings().setCurrentRow(2);
  EXPECT_EQ(browser().textCursor().block().text(), "Keys");
  EXPECT_NEAR(browser().cursorRect().top(), 0, browser().fontMetrics().lineSpacing());
}

TEST_F(HelpPanelTest, EscapeAndTheKeyForClosingCloseIt) {
  open();
  QTest::keyClick(&browser(), Qt::Key_Escape);
  EXPECT_FALSE(panel_.dialog().isVisible());
  show();
  QTest::keySequence(&panel_.dialog(), QKeySequence::Close);
  EXPECT_FALSE(panel_.dialog().isVisible());
  show();
  QTest::mouseClick(panel_.dialog().findChild<QPushButton*>(), Qt::LeftButton);
  EXPECT_FALSE(panel_.dialog().isVisible());
}

TEST_F(HelpPanelTest, FindsAWordAndBeginsAgainAtTheEnd) {
  open();
  auto* search = panel_.dialog().findChild<QLineEdit*>();
  QTest::keySequence(&panel_.dialog(), QKeySequence::Find);
  EXPECT_EQ(QApplication::focusWidget(), search);
  QTest::keyClicks(search, "geonames");
  QTest::keyClick(search, Qt::Key_Return);
  EXPECT_EQ(browser().textCursor().selectedText(), "GeoNames");
  const int first = browser().textCursor().position();
  while (browser().find("geonames")) continue;
  QTest::keyClick(search, Qt::Key_Return);
  EXPECT_EQ(browser().textCursor().position(), first);
  search->setText("no such word");
  QTest::keyClick(search, Qt::Key_Return);
  EXPECT_EQ(browser().textCursor().position(), first);
  EXPECT_TRUE(panel_.dialog().isVisible()) << "Return in the field must not press the button";
}

TEST_F(HelpPanelTest, LinksAreForTheWorkspace) {
  open();
  emit browser().anchorClicked(QUrl("https://example.org/a%20b"));
  EXPECT_THAT(workspace_.urls, ElementsAre("https://example.org/a%20b"));
}

// The colours of everything that is written, absent where the palette's own is used.
std::vector<QColor> coloursOf(const QTextDocument& document) {
  std::vector<QColor> colours;
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
    for (auto part = block.begin(); !part.atEnd(); ++part) {
      const QTextCharFormat format = part.fragment().charFormat();
      if (format.hasProperty(QTextFormat::ForegroundBrush)) colours.push_back(format.foreground().color());
      EXPECT_FALSE(format.hasProperty(QTextFormat::BackgroundBrush));
    }
  }
  return colours;
}

TEST_F(HelpPanelTest, FollowsThePalette) {
  open();
  QPalette palette = panel_.dialog().palette();
  palette.setColor(QPalette::Link, Qt::yellow);
  panel_.dialog().setPalette(palette);
  runPendingEvents();
  EXPECT_THAT(coloursOf(*browser().document()),
              ::testing::AllOf(Contains(QColor(Qt::yellow)), ::testing::Each(QColor(Qt::yellow))));
}

// Counts the events of a kind that a widget gets.
class EventCount final : public QObject {
 public:
  EventCount(QWidget& widget, QEvent::Type type) : type_(type) { widget.installEventFilter(this); }
  int count = 0;

 protected:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() == type_) ++count;
    return false;
  }

 private:
  const QEvent::Type type_;
};

TEST_F(HelpPanelTest, MakesWayForThePreferencesAndComesBackAfterThem) {
  QWindow show;
  show.show();
  QtHelpPanel help([&show] { return &show; }, workspace_);
  QtConfigureSheet sheet([&show] { return &show; }, {});
  help.orderFront();
  sheet.begin();
  ASSERT_TRUE(waitUntil([&] { return help.dialog().windowHandle()->transientParent() == nullptr; }));
  sheet.end();
  EXPECT_TRUE(waitUntil([&] { return help.dialog().windowHandle()->transientParent() == &show; }));
}

TEST_F(HelpPanelTest, CanBeUsedBesideThePreferences) {
  QWindow show;
  show.show();
  QtHelpPanel help([&show] { return &show; }, workspace_);
  QtConfigureSheet sheet([&show] { return &show; }, {});
  help.orderFront();
  EXPECT_EQ(help.dialog().windowHandle()->transientParent(), &show);
  EventCount blocked(help.dialog(), QEvent::WindowBlocked);
  EventCount unblocked(help.dialog(), QEvent::WindowUnblocked);
  sheet.begin();
  // The preferences block the window that the help lay over, and what belongs to it.
  EXPECT_TRUE(waitUntil([&] { return help.dialog().windowHandle()->transientParent() == nullptr; }));
  EXPECT_EQ(unblocked.count, blocked.count);
  help.orderFront();
  EXPECT_EQ(help.dialog().windowHandle()->transientParent(), sheet.dialog().windowHandle());
  EXPECT_EQ(unblocked.count, blocked.count);
  sheet.end();
  EXPECT_TRUE(waitUntil([&] { return help.dialog().windowHandle()->transientParent() == &show; }));
  EXPECT_TRUE(help.dialog().isVisible());
}

TEST(RichTextDocumentTest, CarriesOverWhatItIsGiven) {
  RichText text;
  text.links = {"https://example.org/"};
  text.paragraphs.push_back({.headingLevel = 2, .spans = {{.text = "Head"}}});
  text.paragraphs.push_back(
      {.leftIndent = 20,
       .firstLineIndent = -20,
       .tabStops = {20},
       .spans = {{.text = "a\tb", .bold = true}, {.text = "c", .italic = true, .link = 1}}});
  QTextDocument document;
  showRichText(document, text, QPalette());
  ASSERT_EQ(document.blockCount(), 2);
  const QTextBlock head = document.firstBlock();
  EXPECT_EQ(head.text(), "Head");
  EXPECT_EQ(head.blockFormat().headingLevel(), 2);
  EXPECT_EQ(head.begin().fragment().charFormat().fontWeight(), QFont::Bold);
  const QTextBlock body = head.next();
  EXPECT_GT(body.blockFormat().leftMargin(), 0);
  EXPECT_EQ(body.blockFormat().textIndent(), -body.blockFormat().leftMargin());
  ASSERT_EQ(body.blockFormat().tabPositions().size(), 1);
  EXPECT_EQ(body.blockFormat().tabPositions()[0].position, body.blockFormat().leftMargin());
  auto part = body.begin();
  EXPECT_EQ(part.fragment().text(), "a\tb");
  EXPECT_EQ(part.fragment().charFormat().fontWeight(), QFont::Bold);
  ++part;
  EXPECT_TRUE(part.fragment().charFormat().fontItalic());
  EXPECT_EQ(part.fragment().charFormat().anchorHref(), "https://example.org/");
}

}  // namespace
}  // namespace lumivane
