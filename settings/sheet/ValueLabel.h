// A label for a value that changes: always as wide as the widest one, so that nothing beside it moves.
//
// Threads: main only.
// Errors:  none.
#pragma once

#include <QLabel>

namespace lumivane {

class ValueLabel final : public QLabel {
  Q_OBJECT
 public:
  explicit ValueLabel(QWidget* parent = nullptr);

  void setWidestText(const QString& text);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 private:
  QString widest_;
};

}  // namespace lumivane
