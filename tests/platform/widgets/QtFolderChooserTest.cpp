#include "platform/linux/QtFolderChooser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>
#include <QWindow>
#include <filesystem>

#include "tests/support/QtWaiting.h"

namespace lumivane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class QtFolderChooserTest : public ::testing::Test {
 protected:
  QtFolderChooserTest() {
    QStandardPaths::setTestModeEnabled(true);  // Qt's dialog writes its settings elsewhere
    EXPECT_TRUE(folder_.isValid());
    show_->show();
  }

  [[nodiscard]] std::string path(const QString& below = {}) const {
    return folder_.filePath(below).toStdString();
  }

  void ask(const FolderQuestion& question) {
    chooser_->choose(question, [this](const FolderAnswer& answer) { answers_.push_back(answer); });
  }
  // The dialog that is shown now.
  QFileDialog* dialog() {
    QFileDialog* found = nullptr;
    EXPECT_TRUE(waitUntil([&] {
      found = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
      return found != nullptr;
    }));
    return found;
  }
  void confirm(QFileDialog& shown, const QString& typed) {
    shown.findChild<QLineEdit*>("fileNameEdit")->setText(typed);
    shown.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open)->click();
  }
  static bool shows(const QFileDialog& shown, const QString& text) {
    const QList<QLabel*> labels = shown.findChildren<QLabel*>();
    return std::any_of(labels.begin(), labels.end(),
                       [&](const QLabel* label) { return label->text() == text; });
  }
  bool answered(std::size_t count = 1) {
    return waitUntil([&] { return answers_.size() == count; });
  }

  // A disk that answers unless it is told to hang.
  struct Disk final : BoundedCalls {
    bool runWithin(Nanoseconds /*limit*/, Job job) override {
      if (!hangs) job();
      return !hangs;
    }
    bool hangs = false;
  };

  QTemporaryDir folder_;
  Disk disk_;
  std::unique_ptr<QWindow> show_ = std::make_unique<QWindow>();
  std::unique_ptr<QtFolderChooser> chooser_ =
      std::make_unique<QtFolderChooser>([this] { return show_.get(); }, disk_);
  std::vector<FolderAnswer> answers_;
};

TEST_F(QtFolderChooserTest, AsksForAFolderOverTheWindow) {
  ASSERT_TRUE(QDir(folder_.path()).mkdir("pictures"));
  ask({.startFolder = path()});
  QFileDialog* shown = dialog();
  ASSERT_NE(shown, nullptr);
  EXPECT_THAT(answers_, IsEmpty());
  EXPECT_EQ(shown->windowHandle()->transientParent(), show_.get());
  EXPECT_EQ(shown->windowModality(), Qt::WindowModal);
  EXPECT_EQ(shown->fileMode(), QFileDialog::Directory);
  EXPECT_TRUE(shown->testOption(QFileDialog::ShowDirsOnly));
  EXPECT_FALSE(shown->testOption(QFileDialog::DontUseNativeDialog));
  EXPECT_EQ(shown->directory().path(), folder_.path());
  confirm(*shown, "pictures");
  ASSERT_TRUE(answered());
  EXPECT_EQ(answers_[0].response, 1);
  EXPECT_EQ(answers_[0].folder, path("pictures"));
  runPendingEvents();
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
  EXPECT_EQ(answers_.size(), 1U);
}

TEST_F(QtFolderChooserTest, NamesBeyondAsciiComeBackByteByByte) {
  const QString name = QString::fromUtf8("Bilder 100% äöü #1?");
  ASSERT_TRUE(QDir(folder_.path()).mkdir(name));
  ask({.startFolder = path(name)});
  QFileDialog* shown = dialog();
  EXPECT_EQ(shown->directory().dirName(), name);
  confirm(*shown, folder_.filePath(name));
  ASSERT_TRUE(answered());
  EXPECT_EQ(answers_[0].folder, path(name));
}

TEST_F(QtFolderChooserTest, EscapeIsADenial) {
  ask({});
  QTest::keyClick(dialog(), Qt::Key_Escape);
  ASSERT_TRUE(answered());
  EXPECT_NE(answers_[0].response, 1);
}

TEST_F(QtFolderChooserTest, AMessageStandsAboveTheList) {
  const std::string message = "The scan encountered <b>an alias</b>\nClick Include";
  ask({.startFolder = path(), .message = message, .confirmLabel = "Include"});
  QFileDialog* shown = dialog();
  EXPECT_TRUE(shown->testOption(QFileDialog::DontUseNativeDialog));
  QLabel* label = nullptr;
  for (auto* each : shown->findChildren<QLabel*>()) {
    if (each->text().toStdString() == message) label = each;
  }
  ASSERT_NE(label, nullptr);
  EXPECT_TRUE(label->isVisible());
  EXPECT_EQ(label->textFormat(), Qt::PlainText);
  runPendingEvents();
  const auto bottom = [&](QWidget* part) { return part->mapTo(shown, part->rect().bottomLeft()).y(); };
  const auto top = [&](QWidget* part) { return part->mapTo(shown, QPoint()).y(); };
  EXPECT_LT(bottom(label), top(shown->findChild<QTreeView*>("treeView")->parentWidget()->parentWidget()));
  EXPECT_LT(bottom(label), top(shown->findChild<QWidget*>("lookInCombo")));
  EXPECT_EQ(shown->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open)->text().remove('&'),
            "Include");
  confirm(*shown, folder_.path());
  ASSERT_TRUE(answered());
  EXPECT_EQ(answers_[0].response, 1);
  EXPECT_EQ(answers_[0].folder, folder_.path().toStdString());
}

TEST_F(QtFolderChooserTest, QuestionsComeOneAfterTheOther) {
  ask({.startFolder = path(), .message = "first"});
  ask({.startFolder = path(), .message = "second"});
  QFileDialog* first = dialog();
  EXPECT_TRUE(shows(*first, "first"));
  runPendingEvents();
  EXPECT_EQ(dialog(), first) << "the second one waits";
  first->reject();
  ASSERT_TRUE(answered(1));
  QFileDialog* second = dialog();
  EXPECT_TRUE(shows(*second, "second"));
  second->reject();
  ASSERT_TRUE(answered(2));
}

TEST_F(QtFolderChooserTest, AFolderOnADiskThatHangsIsNotWhereItBegins) {
  ask({.startFolder = path(), .message = "answers"});
  EXPECT_EQ(dialog()->directory().path().toStdString(), path());
  dialog()->reject();
  ASSERT_TRUE(answered(1));
  const std::string elsewhere = (std::filesystem::path(path()) / "hangs").string();
  std::filesystem::create_directory(elsewhere);
  disk_.hangs = true;
  ask({.startFolder = elsewhere, .message = "hangs"});
  EXPECT_NE(dialog()->directory().path().toStdString(), elsewhere);
  dialog()->reject();
  ASSERT_TRUE(answered(2));
}

TEST_F(QtFolderChooserTest, AStartFolderThatIsNoneIsLeftToTheDesktop) {
  ask({.startFolder = path("no such folder")});
  EXPECT_TRUE(dialog()->directory().exists());
  dialog()->reject();
  ASSERT_TRUE(answered());
  ask({.startFolder = "relative"});
  EXPECT_TRUE(dialog()->directory().exists());
  dialog()->reject();
  ASSERT_TRUE(answered(2));
}

TEST_F(QtFolderChooserTest, IsDismissedWhenTheWindowGoes) {
  ask({.startFolder = path()});
  ASSERT_NE(dialog(), nullptr);
  show_->hide();
  ASSERT_TRUE(answered());
  EXPECT_NE(answers_[0].response, 1);
}

TEST_F(QtFolderChooserTest, AWindowThatIsClosedHasNoDialogs) {
  show_->hide();
  ask({.startFolder = path()});
  ask({.startFolder = path()});
  EXPECT_THAT(answers_, IsEmpty()) << "not before the caller is done";
  ASSERT_TRUE(answered(2));
  EXPECT_NE(answers_[0].response, 1);
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(QtFolderChooserTest, IsNotAnsweredAnyMoreWhenItEnds) {
  ask({.startFolder = path()});
  ASSERT_NE(dialog(), nullptr);
  ask({.startFolder = path()});
  chooser_.reset();
  runPendingEvents();
  EXPECT_THAT(answers_, IsEmpty());
}

}  // namespace
}  // namespace lumivane
