// Shows a path on one line, shortened in its middle where there is no room, whole as a tool tip.
//
// Threads: main only.
// Errors:  none; bytes that cannot be shown are written as \xNN.
#pragma once

#include <QLabel>
#include <string>

namespace lumivane {

class PathLabel final : public QLabel {
  Q_OBJECT
 public:
  explicit PathLabel(QWidget* parent = nullptr);

  void showPath(const std::string& path);
  // As it was given: the text on the screen cannot hold every byte.
  [[nodiscard]] const std::string& path() const { return path_; }

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void fit();

  std::string path_;
  QString readable_;
};

}  // namespace lumivane
