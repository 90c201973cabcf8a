#include "platform/linux/DesktopWorkspace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDesktopServices>
#include <QObject>
#include <QUrl>

namespace lumivane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Stands for the desktop's programs.
class Opener final : public QObject {
  Q_OBJECT
 public:
  Opener() {
    for (const char* scheme : kSchemes) QDesktopServices::setUrlHandler(scheme, this, "open");
  }
  ~Opener() override {
    for (const char* scheme : kSchemes) QDesktopServices::unsetUrlHandler(scheme);
  }
  std::vector<std::string> opened;

 public slots:
  void open(const QUrl& url) { opened.push_back(url.toString(QUrl::FullyEncoded).toStdString()); }

 private:
  static constexpr const char* kSchemes[] = {"https", "mailto"};
};

TEST(DesktopWorkspaceTest, OpensPagesAndMails) {
  const Opener opener;
  DesktopWorkspace workspace;
  EXPECT_TRUE(workspace.openUrl("https://lumivane.example/donate.html"));
  EXPECT_TRUE(workspace.openUrl("mailto:a@lumivane.example?subject=Lumivane%20Feedback"));
  EXPECT_THAT(opener.opened, ElementsAre("https://lumivane.example/donate.html",
                                         "mailto:a@lumivane.example?subject=Lumivane%20Feedback"));
}

TEST(DesktopWorkspaceTest, WhatIsNoUrlOpensNothing) {
  const Opener opener;
  DesktopWorkspace workspace;
  for (const char* text :
       {"", "lumivane", "/etc/passwd", "https://a b", "https://[", "://x", "https://x/%zz"}) {
    EXPECT_FALSE(workspace.openUrl(text)) << text;
  }
  EXPECT_THAT(opener.opened, IsEmpty());
}

}  // namespace
}  // namespace lumivane

#include "DesktopWorkspaceTest.moc"
