// The window of the help panel: the text, a list of its headings, and a field to search it.
//
// Threads: main only.
// Owns:    the text.
// Errors:  none.
#pragma once

#include <QDialog>

#include "settings/richtext/RichText.h"

class QLineEdit;
class QListWidget;
class QSplitter;
class QTextBrowser;

namespace lumivane {

class HelpDialog final : public QDialog {
  Q_OBJECT
 public:
  HelpDialog();

  void showText(RichText text);

 signals:
  void linkClicked(const QUrl& link);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void arrange();
  void render();
  void listHeadings();
  void goToHeading(int row);
  void find();

  RichText text_;
  QSplitter* parts_;
  QListWidget* headings_;
  QTextBrowser* browser_;
  QLineEdit* search_;
};

}  // namespace lumivane
