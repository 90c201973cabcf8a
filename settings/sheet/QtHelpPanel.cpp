#include "settings/sheet/QtHelpPanel.h"

#include <QFile>
#include <QUrl>
#include <utility>

#include "settings/richtext/RtfReader.h"

// The linker leaves out what nobody calls. Not within a namespace: Qt declares the function here.
static void bringDocumentsAlong() {
  Q_INIT_RESOURCE(documents);
}

namespace lumivane {

QtHelpPanel::QtHelpPanel(WindowSource window, Workspace& workspace)
    : overWindow_(dialog_, std::move(window)) {
  bringDocumentsAlong();
  QObject::connect(&dialog_, &HelpDialog::linkClicked, &dialog_, [&workspace](const QUrl& link) {
    (void)workspace.openUrl(link.toString(QUrl::FullyEncoded).toStdString());
  });
}

Result<Done> QtHelpPanel::loadDocument(const std::string& name) {
  if (!name.empty() && name == shown_) return Done{};
  shown_.clear();
  dialog_.showText({});
  QFile file(QStringLiteral(":/documents/%1.rtf").arg(QString::fromStdString(name)));
  if (!file.open(QIODevice::ReadOnly)) return Error{"there is no document " + name};
  const QByteArray bytes = file.readAll();
  Result<RichText> text = readRtf({bytes.constData(), static_cast<std::size_t>(bytes.size())});
  if (!text) return Error{"the document " + name + " cannot be read: " + text.error()};
  dialog_.showText(std::move(text).value());
  shown_ = name;
  return Done{};
}

void QtHelpPanel::orderFront() {
  overWindow_.show();
}

}  // namespace lumivane
