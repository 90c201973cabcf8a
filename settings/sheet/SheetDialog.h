// The dialog that the preferences lie in: there is no way out of it but the one that keeps the settings.
//
// Threads: main only.
// Errors:  none.
#pragma once

#include <QDialog>

namespace lumivane {

class SheetDialog final : public QDialog {
  Q_OBJECT
 public:
  SheetDialog();

  // The wheel turns this control only while it has the keys: else whoever scrolls the page would change it by mistake.
  void passWheelOn(QWidget& control);

  void reject() override;

 signals:
  // Escape, or the window manager's close button. The dialog stays until somebody hides it.
  void dismissed();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void quits();
  void showFocused(QWidget* widget) const;

  bool quitting_ = false;
};

}  // namespace lumivane
