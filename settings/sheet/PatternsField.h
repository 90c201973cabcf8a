// The text with the skip patterns, one a line, and what is wrong with it while it is typed.
//
// Threads: main only.
// Errors:  none; a faulty pattern is shown as such and otherwise left alone.
#pragma once

#include <QPlainTextEdit>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>

namespace lumivane {

struct PatternFault {
  std::size_t line = 0;  // from 1
  std::string reason;    // a few words in English
};

// The first faulty line of a text, if there is one.
using PatternCheck = std::function<std::optional<PatternFault>(const std::string& text)>;

class PatternsField final : public QPlainTextEdit {
  Q_OBJECT
 public:
  explicit PatternsField(QWidget* parent = nullptr);

  void setCheck(PatternCheck check);

  // Until the user changes something, exactly the bytes that were shown.
  [[nodiscard]] std::string patterns() const;
  // By program: tells faultFound() alone.
  void showPatterns(const std::string& text);

  [[nodiscard]] QSize sizeHint() const override;

 signals:
  void editingBegan();                    // with the first change since the keys came here
  void editingEnded();                    // the keys go elsewhere after a change
  void faultFound(const QString& fault);  // empty: there is none

 protected:
  void focusOutEvent(QFocusEvent* event) override;

 private:
  [[nodiscard]] QString typedText() const;
  void changed();
  void check();
  void markLine(std::size_t line);

  PatternCheck check_;
  std::optional<std::string> shown_;  // absent: the user has changed it
  bool editing_ = false;
  bool filling_ = false;
};

}  // namespace lumivane
