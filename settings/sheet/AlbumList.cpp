#include "settings/sheet/AlbumList.h"

namespace lumivane {
namespace {

constexpr int kRowsShown = 4;

}  // namespace

QSize AlbumList::sizeHint() const {
  return {QListWidget::sizeHint().width(), kRowsShown * fontMetrics().lineSpacing() + 2 * frameWidth()};
}

}  // namespace lumivane
