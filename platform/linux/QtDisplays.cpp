#include "platform/linux/QtDisplays.h"

#include <QGuiApplication>
#include <QScreen>
#include <utility>

#include "platform/linux/DisplayNames.h"

namespace lumivane {
namespace {

// While no display is attached, Qt keeps a screen without size in the place of one.
bool isReal(const QScreen* screen) {
  return !screen->geometry().isEmpty();
}

QList<QScreen*> realScreens() {
  QList<QScreen*> screens;
  if (qGuiApp == nullptr) return screens;
  for (QScreen* screen : QGuiApplication::screens()) {
    if (isReal(screen)) screens.append(screen);
  }
  return screens;
}

Display displayOf(const QScreen& screen, DisplayNumber number) {
  const QSize size = screen.size();
  return {number,
          displayNameFrom(screen.manufacturer().toStdString(), screen.model().toStdString(),
                          screen.name().toStdString()),
          {static_cast<double>(size.width()), static_cast<double>(size.height())},
          screen.devicePixelRatio(),
          screen.name().toStdString()};
}

}  // namespace

DisplayNumber displayNumberOf(const QScreen* screen) {
  return static_cast<DisplayNumber>(realScreens().indexOf(screen) + 1);
}

QtDisplays::QtDisplays() {
  if (qGuiApp == nullptr) return;
  for (QScreen* screen : QGuiApplication::screens()) watch(screen);
  QObject::connect(qGuiApp, &QGuiApplication::screenAdded, &receiver_, [this](QScreen* screen) {
    watch(screen);
    changed();
  });
  QObject::connect(qGuiApp, &QGuiApplication::screenRemoved, &receiver_, [this] { changed(); });
  QObject::connect(qGuiApp, &QGuiApplication::primaryScreenChanged, &receiver_, [this] { changed(); });
}

std::vector<Display> QtDisplays::attached() const {
  std::vector<Display> displays;
  for (const QScreen* screen : realScreens()) {
    displays.push_back(displayOf(*screen, static_cast<DisplayNumber>(displays.size() + 1)));
  }
  return displays;
}

void QtDisplays::onChange(Job job) {
  jobs_.push_back(std::move(job));
}

void QtDisplays::watch(QScreen* screen) {
  QObject::connect(screen, &QScreen::geometryChanged, &receiver_, [this] { changed(); });
  // The scale has no signal of its own; with another one the points a metre change.
  QObject::connect(screen, &QScreen::physicalDotsPerInchChanged, &receiver_, [this] { changed(); });
}

void QtDisplays::changed() {
  for (const Job& job : jobs_) job();
}

}  // namespace lumivane
