#include "settings/sheet/QtConfigureSheet.h"

#include <QScopedValueRollback>
#include <QStyle>
#include <utility>

#include "ui_ConfigureSheet.h"

namespace lumivane {
namespace {

constexpr SliderRange kThreshold{0, 1};  // of width divided by height
constexpr int kThresholdDecimals = 2;
constexpr int kDissolveDecimals = 1;

void keepRoomWhenHidden(QWidget& widget) {
  QSizePolicy policy = widget.sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  widget.setSizePolicy(policy);
}

}  // namespace

QtConfigureSheet::QtConfigureSheet(WindowSource window, PatternCheck check)
    : ui_(std::make_unique<Ui::ConfigureSheet>()), overWindow_(dialog_, std::move(window)) {
  ui_->setupUi(&dialog_);
  nameControls();
  fitSlider(*ui_->blackBordersThresholdSlider_, *ui_->blackBordersThresholdValueView_, kThreshold,
            kThresholdDecimals, QString());
  fitSlider(*ui_->crossDissolveDurationSlider_, *ui_->crossDissolveDurationValueView_,
            kCrossDissolveDurationRange, kDissolveDecimals, QStringLiteral(" s"));
  dialog_.passWheelOn(*ui_->currentScreenView_);
  indent({ui_->folderIndent_, ui_->thresholdIndent_, ui_->extensionIndent_});
  keepRoomWhenHidden(*ui_->img_gathering_progress_);
  setProgressSpinning(false);
  connectControls();
  ui_->skipPatternsView_->setCheck(std::move(check));
}

QtConfigureSheet::~QtConfigureSheet() = default;

void QtConfigureSheet::nameControls() {
  using enum SheetControl;
  widgets_ = {
      {durationPerImageView_, ui_->durationPerImageView_},
      {initZoomInFactorView_, ui_->initZoomInFactorView_},
      {excludeSizeView_, ui_->excludeSizeView_},
      {excludekBView_, ui_->excludekBView_},
      {fontSizeView_, ui_->fontSizeView_},
      {infoDelayView_, ui_->infoDelayView_},
      {skipPatternsView_, ui_->skipPatternsView_},
      {useSpotlightView_, ui_->useSpotlightView_},
      {useDirectorySearchView_, ui_->useDirectorySearchView_},
      {useAlbumView_, ui_->useAlbumView_},
      {useDirectoryTreeView_, ui_->useDirectoryTreeView_},
      {showImagePathView_, ui_->showImagePathView_},
      {displayFilenameView_, ui_->displayFilenameView_},
      {showFileExtensionView_, ui_->showFileExtensionView_},
      {showImageInfoView_, ui_->showImageInfoView_},
      {zoomIsOnView_, ui_->zoomIsOnView_},
      {kenBurnsView_, ui_->kenBurnsView_},
      {dontRandomizeView_, ui_->dontRandomizeView_},
      {startWithRandomView_, ui_->startWithRandomView_},
      {allowBlackBordersView_, ui_->allowBlackBordersView_},
      {crossDissolveView_, ui_->crossDissolveView_},
      {enableDeleteView_, ui_->enableDeleteView_},
      {blackBordersThresholdSlider_, ui_->blackBordersThresholdSlider_},
      {crossDissolveDurationSlider_, ui_->crossDissolveDurationSlider_},
      {currentScreenView_, ui_->currentScreenView_},
      {albumView_, ui_->albumView_},
      {applyView_, ui_->applyView_},
      {changeDirectoryView_, ui_->changeDirectoryView_},
      {rescanDirectoryView_, ui_->rescanDirectoryView_},
      {directoryPathView_, ui_->directoryPathView_},
      {num_images_, ui_->num_images_},
      {version_label_, ui_->version_label_},
      {initZoomInFactorLabelView_, ui_->initZoomInFactorLabelView_},
      {excludekBLabelView_, ui_->excludekBLabelView_},
      {skipPatternsLabelView_, ui_->skipPatternsLabelView_},
  };
}

void QtConfigureSheet::fitSlider(RangeSlider& slider, ValueLabel& value, SliderRange span, int decimals,
                                 const QString& unit) {
  const auto asText = [decimals, unit](float number) {
    return QString::number(static_cast<double>(number), 'f', decimals) + unit;
  };
  value.setWidestText(asText(span.maximum));
  QObject::connect(&slider, &RangeSlider::numberShown, &value, [asText, &slider, &value](float number) {
    value.setText(asText(number));
    slider.setAccessibleDescription(value.text());
  });
  int stepsInOne = 1;
  for (int i = 0; i < decimals; ++i) stepsInOne *= 10;
  slider.setSpan(span, stepsInOne);
  dialog_.passWheelOn(slider);
}

// By as much as the text of a check box is.
void QtConfigureSheet::indent(std::initializer_list<QSpacerItem*> spacers) const {
  const QStyle* style = dialog_.style();
  const int width = style->pixelMetric(QStyle::PM_IndicatorWidth);
  for (QSpacerItem* spacer : spacers) spacer->changeSize(width, 0, QSizePolicy::Fixed);
}

std::string QtConfigureSheet::text(SheetControl control) const {
  const QWidget* shown = &widget(control);
  if (const auto* folder = qobject_cast<const PathLabel*>(shown)) return folder->path();
  if (const auto* field = qobject_cast<const QLineEdit*>(shown)) return field->text().toStdString();
  if (const auto* label = qobject_cast<const QLabel*>(shown)) return label->text().toStdString();
  if (const auto* patterns = qobject_cast<const PatternsField*>(shown)) return patterns->patterns();
  return {};
}

void QtConfigureSheet::setText(SheetControl control, const std::string& text) {
  QWidget* shown = &widget(control);
  if (auto* folder = qobject_cast<PathLabel*>(shown)) return folder->showPath(text);
  if (auto* field = qobject_cast<NumberField*>(shown)) return field->showText(QString::fromStdString(text));
  if (auto* label = qobject_cast<QLabel*>(shown)) return label->setText(QString::fromStdString(text));
  if (auto* patterns = qobject_cast<PatternsField*>(shown)) patterns->showPatterns(text);
}

bool QtConfigureSheet::isOn(SheetControl control) const {
  const auto* button = qobject_cast<const QAbstractButton*>(&widget(control));
  return button != nullptr && button->isChecked();
}

void QtConfigureSheet::setOn(SheetControl control, bool on) {
  auto* button = qobject_cast<QAbstractButton*>(&widget(control));
  if (button == nullptr) return;
  const QScopedValueRollback filling(filling_, true);
  // A pair of radio buttons allows none to be off unless another one is on.
  QButtonGroup* pair = button->group();
  if (pair != nullptr) pair->setExclusive(false);
  button->setChecked(on);
  if (pair != nullptr) pair->setExclusive(true);
}

SliderRange QtConfigureSheet::sliderRange(SheetControl control) const {
  const auto* slider = qobject_cast<const RangeSlider*>(&widget(control));
  return slider == nullptr ? SliderRange{} : slider->span();
}

void QtConfigureSheet::setSlider(SheetControl control, float value) {
  if (auto* slider = qobject_cast<RangeSlider*>(&widget(control))) slider->showNumber(value);
}

void QtConfigureSheet::setItems(SheetControl control, const std::vector<std::string>& items) {
  const QScopedValueRollback filling(filling_, true);
  QStringList texts;
  for (const std::string& item : items) texts.append(QString::fromStdString(item));
  if (auto* popUp = qobject_cast<QComboBox*>(&widget(control))) {
    popUp->clear();
    popUp->addItems(texts);
    popUp->setCurrentIndex(-1);
  } else if (auto* table = qobject_cast<QListWidget*>(&widget(control))) {
    table->clear();
    table->addItems(texts);
  }
}

void QtConfigureSheet::selectItem(SheetControl control, std::optional<std::size_t> row) {
  const QScopedValueRollback filling(filling_, true);
  const int index = row ? static_cast<int>(*row) : -1;
  if (auto* popUp = qobject_cast<QComboBox*>(&widget(control))) {
    popUp->setCurrentIndex(index);
  } else if (auto* table = qobject_cast<QListWidget*>(&widget(control))) {
    table->setCurrentRow(index);
    if (!row) table->clearSelection();
  }
}

std::optional<std::size_t> QtConfigureSheet::selectedItem(SheetControl control) const {
  int index = -1;
  if (const auto* popUp = qobject_cast<const QComboBox*>(&widget(control))) {
    index = popUp->currentIndex();
  } else if (const auto* table = qobject_cast<const QListWidget*>(&widget(control))) {
    const QList<QListWidgetItem*> selected = table->selectedItems();
    if (!selected.isEmpty()) index = table->row(selected.first());
  }
  return index < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(index));
}

void QtConfigureSheet::setEnabled(SheetControl control, bool enabled) {
  widget(control).setEnabled(enabled);
  // What belongs to a control and to nothing else goes with it.
  if (control == SheetControl::blackBordersThresholdSlider_) {
    ui_->blackBordersThresholdLabelView_->setEnabled(enabled);
    ui_->blackBordersThresholdValueView_->setEnabled(enabled);
  } else if (control == SheetControl::initZoomInFactorView_) {
    ui_->initZoomInFactorUnit_->setEnabled(enabled);
  } else if (control == SheetControl::excludekBView_) {
    ui_->excludekBUnit_->setEnabled(enabled);
  }
}

void QtConfigureSheet::setProgressSpinning(bool spinning) {
  ui_->img_gathering_progress_->setVisible(spinning);
}

// Beside the text, with a sign and in words: a colour alone tells nothing to some.
void QtConfigureSheet::showFault(const QString& fault) {
  const QStyle* style = dialog_.style();
  const int size = style->pixelMetric(QStyle::PM_SmallIconSize, nullptr, ui_->skipPatternsHintIcon_);
  const QIcon warning = style->standardIcon(QStyle::SP_MessageBoxWarning);
  ui_->skipPatternsHintIcon_->setPixmap(
      fault.isEmpty() ? QPixmap() : warning.pixmap(QSize(size, size), dialog_.devicePixelRatio()));
  ui_->skipPatternsHintView_->setText(fault);
  ui_->skipPatternsView_->setAccessibleDescription(fault);
}

void QtConfigureSheet::begin() {
  if (!dialog_.isVisible()) ui_->pages_->setFocus();
  overWindow_.show();
}

void QtConfigureSheet::end() {
  dialog_.hide();
}

bool QtConfigureSheet::isShown() const {
  return dialog_.isVisible();
}

}  // namespace lumivane
