// Ties a dialog to the slideshow's window, which is no widget: lies in front of it, and gives the keys back to it.
//
// Threads: main only.
// Owns:    nothing; made after the dialog, gone before it.
// Units:   as in Qt: points, origin at the upper left of the primary display.
// Errors:  none; without a window the dialog stands for itself.
#pragma once

#include <QObject>
#include <QPointer>
#include <functional>

class QDialog;
class QWindow;

namespace lumivane {

// The slideshow's window; nullptr while there is none.
using WindowSource = std::function<QWindow*()>;

class DialogOverWindow final : public QObject {
 public:
  DialogOverWindow(QDialog& dialog, WindowSource window);

  // Called when the window that the shown dialog lies over closes or is gone.
  void whenWindowGoes(std::function<void()> action) { windowGoes_ = std::move(action); }

  // Opens the dialog in the middle of the window, as large as it likes to be and the display allows. One that is
  // shown already comes to the front. While a modal dialog is shown, it lies over that one. A dialog that is not modal
  // makes way for a modal one that opens later, and can be used beside it.
  void show();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] QWindow* windowInFront() const;
  void layOver(QWindow* parent);
  void layOverWhatIsInFront();
  void standForItself() { layOver(nullptr); }
  void parentShown(bool shown);
  void parentGone();
  void place() const;
  void returnKeys() const;
  bool handsKeysOn(QEvent* event) const;
  void focusWent(const QWindow* window);
  void keepKeys(const QWindow* focused);
  void takeKeys() const;

  QDialog& dialog_;
  const WindowSource window_;
  std::function<void()> windowGoes_;
  QPointer<QWindow> parent_;
};

}  // namespace lumivane
