#include "platform/linux/QtFolderChooser.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QUrl>
#include <QWindow>
#include <chrono>
#include <memory>
#include <utility>
#include <vector>

#include "platform/linux/FileUri.h"

namespace lumivane {
namespace {

// Not to be felt, and far more than a disk that is awake takes.
constexpr std::chrono::milliseconds kPatience{40};

constexpr long kConfirmed = 1;

QString qtText(const std::string& utf8) {
  return QString::fromStdString(utf8);
}

// By way of an address, which holds every byte of a path that a QString would lose.
QUrl urlOf(const std::string& folder) {
  const std::optional<std::string> uri = fileUri(folder);
  return uri ? QUrl::fromEncoded(QByteArray::fromStdString(*uri)) : QUrl();
}

std::string pathOf(const QUrl& url) {
  if (!url.isLocalFile()) return {};
  return QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1()).toStdString();
}

// The dialog's own parts move down by one row, all of them as they were.
void showAbove(QFileDialog& dialog, const QString& message) {
  auto* grid = qobject_cast<QGridLayout*>(dialog.layout());
  if (grid == nullptr) return;
  struct Part {
    QLayoutItem* item;
    int row, column, rows, columns;
  };
  std::vector<Part> parts;
  const int columns = grid->columnCount();
  while (grid->count() > 0) {
    Part part{};
    grid->getItemPosition(0, &part.row, &part.column, &part.rows, &part.columns);
    part.item = grid->takeAt(0);
    parts.push_back(part);
  }
  for (const Part& part : parts) grid->addItem(part.item, part.row + 1, part.column, part.rows, part.columns);
  auto* label = new QLabel(message);
  label->setTextFormat(Qt::PlainText);  // names of folders may look like mark-up
  label->setWordWrap(true);
  grid->addWidget(label, 0, 0, 1, columns);
}

// Whether the disk says at once that this is a folder.
bool isFolder(const QString& path, BoundedCalls& calls) {
  const auto answer = std::make_shared<bool>(false);
  const bool inTime = calls.runWithin(kPatience, [answer, path] { *answer = QFileInfo(path).isDir(); });
  return inTime && *answer;
}

void prepare(QFileDialog& dialog, const FolderQuestion& question, BoundedCalls& calls) {
  dialog.setWindowModality(Qt::WindowModal);
  dialog.setWindowTitle(QFileDialog::tr("Choose a Folder"));
  dialog.setFileMode(QFileDialog::Directory);
  dialog.setOption(QFileDialog::ShowDirsOnly);
  if (!question.confirmLabel.empty()) {
    dialog.setLabelText(QFileDialog::Accept, qtText(question.confirmLabel));
  }
  if (!question.message.empty()) {
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    showAbove(dialog, qtText(question.message));
  }
  const QUrl start = urlOf(question.startFolder);
  if (isFolder(start.toLocalFile(), calls)) dialog.setDirectoryUrl(start);
}

}  // namespace

struct QtFolderChooser::OpenQuestion {
  OpenQuestion(const FolderQuestion& question, Completion toTell, const WindowSource& window,
               BoundedCalls& calls)
      : completion(std::move(toTell)), overWindow(dialog, window) {
    prepare(dialog, question, calls);
  }

  Completion completion;
  QFileDialog dialog;
  DialogOverWindow overWindow;
};

QtFolderChooser::QtFolderChooser(WindowSource window, BoundedCalls& calls)
    : window_(std::move(window)), calls_(calls) {}
QtFolderChooser::~QtFolderChooser() = default;

void QtFolderChooser::choose(const FolderQuestion& question, Completion completion) {
  waiting_.emplace_back(question, std::move(completion));
  if (open_ == nullptr) later([this] { askNext(); });
}

void QtFolderChooser::later(std::function<void()> job) {
  QMetaObject::invokeMethod(&receiver_, std::move(job), Qt::QueuedConnection);
}

void QtFolderChooser::askNext() {
  if (open_ != nullptr || waiting_.empty()) return;
  auto [question, completion] = std::move(waiting_.front());
  waiting_.pop_front();
  // A dialog over a window that is closed would keep the program from ending.
  const QWindow* window = window_();
  if (window != nullptr && !window->isVisible()) return answer(completion, {});
  open_ = std::make_unique<OpenQuestion>(question, std::move(completion), window_, calls_);
  QObject::connect(&open_->dialog, &QDialog::finished, &receiver_, [this](int result) {
    // By way of the loop: the dialog is still at it.
    later([this, result] { closed(result == QDialog::Accepted); });
  });
  open_->overWindow.whenWindowGoes([this] { open_->dialog.reject(); });
  open_->overWindow.show();
}

void QtFolderChooser::closed(bool confirmed) {
  FolderAnswer given;
  const QList<QUrl> chosen = open_->dialog.selectedUrls();
  if (!chosen.isEmpty()) given.folder = pathOf(chosen.first());
  if (confirmed && !given.folder.empty()) given.response = kConfirmed;
  const Completion completion = std::move(open_->completion);
  open_.reset();
  answer(completion, given);
}

void QtFolderChooser::answer(const Completion& completion, const FolderAnswer& given) {
  if (!waiting_.empty()) later([this] { askNext(); });
  completion(given);
}

}  // namespace lumivane
