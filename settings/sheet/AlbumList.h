// The table of albums: one column, a few rows high.
//
// Threads: main only.
// Errors:  none.
#pragma once

#include <QListWidget>

namespace lumivane {

class AlbumList final : public QListWidget {
  Q_OBJECT
 public:
  using QListWidget::QListWidget;

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override {
    return {QListWidget::minimumSizeHint().width(), sizeHint().height()};
  }
};

}  // namespace lumivane
