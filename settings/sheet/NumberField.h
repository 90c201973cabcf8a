// A field for a number as the user types it. Nothing is refused while typing: what a number may be is decided by
// whoever reads it, and written back.
//
// Threads: main only.
// Errors:  none.
#pragma once

#include <QLineEdit>

namespace lumivane {

class NumberField final : public QLineEdit {
  Q_OBJECT
 public:
  explicit NumberField(QWidget* parent = nullptr);

  // By program: tells nobody, and what was typed before is forgotten.
  void showText(const QString& text);

  [[nodiscard]] QSize sizeHint() const override;

 signals:
  // The user has typed something and is done with it: Return, or the keys go elsewhere.
  void entered();

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void finish();

  bool typed_ = false;  // since it was last told or shown
};

}  // namespace lumivane
