// Photographs every page of the preferences sheet, the help panel and the question for a folder, for the eyes of whoever changes them.
//
//   settings_sheet_gallery FOLDER [light|dark]
//
// QT_SCALE_FACTOR says at which scale. On a screen of any size: QT_QPA_PLATFORM=offscreen, or a virtual X server.
#include <QApplication>
#include <QDir>
#include <QListWidget>
#include <QPalette>
#include <QScreen>
#include <QStyleFactory>
#include <QTabWidget>
#include <QWindow>
#include <iostream>

#include "platform/linux/QtFolderChooser.h"
#include "settings/sheet/QtConfigureSheet.h"
#include "settings/sheet/QtHelpPanel.h"
#include "tests/support/QtWaiting.h"

namespace lumivane {
namespace {

QPalette darkPalette() {
  QPalette palette(QColor(53, 53, 53));
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, QColor(127, 127, 127));
  }
  palette.setColor(QPalette::Base, QColor(35, 35, 35));
  palette.setColor(QPalette::Link, QColor(110, 170, 255));
  palette.setColor(QPalette::ToolTipBase, QColor(60, 60, 60));
  palette.setColor(QPalette::ToolTipText, Qt::white);
  return palette;
}

void fill(QtConfigureSheet& sheet) {
  using enum SheetControl;
  sheet.setItems(currentScreenView_, {"DELL U2720Q", "Color LCD", "unknown_3"});
  sheet.selectItem(currentScreenView_, 0);
  sheet.setText(directoryPathView_,
                "/home/someone/Pictures/A rather long name of a folder/2024/Summer at the lake");
  sheet.setItems(albumView_, {"Best of 2023", "Children", "Garden", "Hikes", "Summer at the lake", "Winter"});
  sheet.setText(excludeSizeView_, "300");
  sheet.setText(excludekBView_, "5");
  sheet.setText(skipPatternsView_, ".*/thumb.*\n.*/[Pp]rivate/(.*");
  sheet.setText(durationPerImageView_, "60");
  sheet.setText(initZoomInFactorView_, "1.3");
  sheet.setText(fontSizeView_, "20");
  sheet.setText(infoDelayView_, "0");
  sheet.setText(num_images_, "123456");
  sheet.setText(version_label_, "Version 0.1.0 (#123)");
  sheet.setSlider(blackBordersThresholdSlider_, 0.25F);
  sheet.setSlider(crossDissolveDurationSlider_, 5);
  for (const SheetControl on :
       {useDirectoryTreeView_, useSpotlightView_, kenBurnsView_, crossDissolveView_, dontRandomizeView_,
        displayFilenameView_, showFileExtensionView_, showImageInfoView_}) {
    sheet.setOn(on, true);
  }
  for (const SheetControl off :
       {useAlbumView_, startWithRandomView_, initZoomInFactorView_, initZoomInFactorLabelView_,
        allowBlackBordersView_, blackBordersThresholdSlider_}) {
    sheet.setEnabled(off, false);
  }
}

std::optional<PatternFault> anyFault(const std::string& text) {
  if (text.find("(.*") == std::string::npos) return std::nullopt;
  return PatternFault{2, "a round bracket has no counterpart"};
}

void photograph(QWidget& window, const QString& path) {
  runPendingEvents();
  // What a screen shows, where there is one.
  const bool onScreen = QGuiApplication::platformName() == "xcb" &&
                        waitUntil([&] { return window.windowHandle()->isExposed(); });
  const QPixmap picture = onScreen ? window.screen()->grabWindow(window.winId()) : window.grab();
  if (!picture.save(path)) std::cerr << "cannot write " << path.toStdString() << '\n';
}

void photographSheet(const QString& folder, const QString& suffix) {
  QtConfigureSheet sheet([] { return nullptr; }, anyFault);
  fill(sheet);
  sheet.begin();
  auto* pages = sheet.dialog().findChild<QTabWidget*>("pages_");
  sheet.setProgressSpinning(true);
  for (int page = 0; page < pages->count(); ++page) {
    pages->setCurrentIndex(page);
    photograph(sheet.dialog(), QStringLiteral("%1/sheet-%2%3.png").arg(folder).arg(page + 1).arg(suffix));
    sheet.setProgressSpinning(false);
  }
  sheet.end();
}

struct NoWorkspace final : Workspace {
  bool openUrl(const std::string& /*url*/) override { return false; }
};

void photographHelp(const QString& folder, const QString& suffix) {
  NoWorkspace workspace;
  QtHelpPanel help([] { return nullptr; }, workspace);
  if (const auto loaded = help.loadDocument("Help_ReadMe_Changelog_LumivaneApp"); !loaded) {
    std::cerr << loaded.error() << '\n';
  }
  help.orderFront();
  auto* headings = help.dialog().findChild<QListWidget*>();
  for (int row = 0; row < headings->count(); row += 2) {
    headings->setCurrentRow(row);
    photograph(help.dialog(), QStringLiteral("%1/help-%2%3.png").arg(folder).arg(row / 2 + 1).arg(suffix));
  }
}

void photographFolderQuestion(const QString& folder, const QString& suffix) {
  QtFolderChooser chooser([] { return nullptr; });
  chooser.choose({.startFolder = QDir::homePath().toStdString(),
                  .message = "The scan encountered an alias pointing to folder \"Summer at the lake\"\n"
                             "Click Include if you want Lumivane to include this folder",
                  .confirmLabel = "Include"},
                 [](const FolderAnswer& /*answer*/) {});
  if (!waitUntil([] { return QApplication::activeModalWidget() != nullptr; })) return;
  photograph(*QApplication::activeModalWidget(), QStringLiteral("%1/folder%2.png").arg(folder, suffix));
}

// The whole screen: the slideshow's window with the preferences over it and the help beside them.
void photographScreen(const QString& folder, const QString& suffix) {
  QWindow show;
  show.setGeometry(QGuiApplication::primaryScreen()->availableGeometry());
  show.show();
  NoWorkspace workspace;
  QtHelpPanel help([&show] { return &show; }, workspace);
  QtConfigureSheet sheet([&show] { return &show; }, anyFault);
  fill(sheet);
  help.orderFront();
  sheet.begin();
  if (!waitUntil(
          [&] { return sheet.dialog().isActiveWindow() && sheet.dialog().windowHandle()->isExposed(); }))
    return;
  (void)help.loadDocument("Help_ReadMe_Changelog_LumivaneApp");
  runPendingEvents();
  QGuiApplication::primaryScreen()->grabWindow().save(QStringLiteral("%1/screen%2.png").arg(folder, suffix));
}

}  // namespace
}  // namespace lumivane

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setStyle(QStyleFactory::create("Fusion"));
  const QStringList arguments = QApplication::arguments();
  if (arguments.size() < 2) return std::cerr << "settings_sheet_gallery FOLDER [light|dark]\n", 2;
  const bool dark = arguments.value(2) == "dark";
  if (dark) QApplication::setPalette(lumivane::darkPalette());
  lumivane::photographSheet(arguments[1], dark ? "-dark" : "");
  lumivane::photographHelp(arguments[1], dark ? "-dark" : "");
  lumivane::photographFolderQuestion(arguments[1], dark ? "-dark" : "");
  if (QGuiApplication::platformName() == "xcb") lumivane::photographScreen(arguments[1], dark ? "-dark" : "");
  return 0;
}
