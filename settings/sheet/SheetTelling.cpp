// Which control of the preferences sheet tells what, and when.
#include <QShortcut>

#include "settings/sheet/QtConfigureSheet.h"
#include "ui_ConfigureSheet.h"

namespace lumivane {

void QtConfigureSheet::tell(Action action) const {
  if (actions_ != nullptr && !filling_) (actions_->*action)();
}

void QtConfigureSheet::connectControls() {
  connectFields();
  connectChoices();
  connectButtons();
}

void QtConfigureSheet::connectFields() {
  const std::pair<const NumberField*, Action> fields[] = {
      {ui_->durationPerImageView_, &SheetActions::setDurationPerImage},
      {ui_->initZoomInFactorView_, &SheetActions::setInitZoomInfactor},
      {ui_->excludeSizeView_, &SheetActions::setExcludeSize},
      {ui_->excludekBView_, &SheetActions::setExcludekB},
      {ui_->fontSizeView_, &SheetActions::setFontSize},
      {ui_->infoDelayView_, &SheetActions::setInfoDelay},
  };
  for (const auto& [field, action] : fields) {
    QObject::connect(field, &NumberField::entered, &dialog_, [this, what = action] { tell(what); });
  }
  const PatternsField* patterns = ui_->skipPatternsView_;
  QObject::connect(patterns, &PatternsField::editingBegan, &dialog_,
                   [this] { tell(&SheetActions::textDidBeginEditing); });
  QObject::connect(patterns, &PatternsField::editingEnded, &dialog_,
                   [this] { tell(&SheetActions::setSkipPatterns); });
  QObject::connect(patterns, &PatternsField::faultFound, &dialog_,
                   [this](const QString& fault) { showFault(fault); });
  QObject::connect(ui_->blackBordersThresholdSlider_, &RangeSlider::numberChosen, &dialog_,
                   [this](float number) {
                     if (actions_ != nullptr) actions_->newBlackBordersThreshold(number);
                   });
  QObject::connect(ui_->crossDissolveDurationSlider_, &RangeSlider::numberChosen, &dialog_,
                   [this](float number) {
                     if (actions_ != nullptr) actions_->newCrossDissolveDuration(number);
                   });
}

void QtConfigureSheet::connectChoices() {
  const std::pair<const QCheckBox*, Action> boxes[] = {
      {ui_->showImagePathView_, &SheetActions::setShowImagePath},
      {ui_->displayFilenameView_, &SheetActions::setDisplayFilename},
      {ui_->showFileExtensionView_, &SheetActions::setShowFileExtension},
      {ui_->showImageInfoView_, &SheetActions::setShowImageInfo},
      {ui_->zoomIsOnView_, &SheetActions::setZoomIsOn},
      {ui_->kenBurnsView_, &SheetActions::setKenBurnsIsOn},
      {ui_->dontRandomizeView_, &SheetActions::dontRandomize},
      {ui_->startWithRandomView_, &SheetActions::startWithRandom},
      {ui_->allowBlackBordersView_, &SheetActions::allowBlackBorders},
      {ui_->crossDissolveView_, &SheetActions::setCrossDissolve},
      {ui_->enableDeleteView_, &SheetActions::setEnableDeleteAtRuntime},
  };
  for (const auto& [box, action] : boxes) tellWhenPressed(*box, action);

  // Of a pair that chooses one setting, one tells for both; a click on what is chosen already tells nothing.
  QObject::connect(ui_->useSpotlightView_, &QRadioButton::toggled, &dialog_,
                   [this] { tell(&SheetActions::setUseSpotlight); });
  const std::pair<const QRadioButton*, Action> sources[] = {
      {ui_->useAlbumView_, &SheetActions::setUseAlbum},
      {ui_->useDirectoryTreeView_, &SheetActions::setUseDirectoryTree},
  };
  for (const auto& [source, action] : sources) {
    QObject::connect(source, &QRadioButton::toggled, &dialog_, [this, what = action](bool on) {
      if (on) tell(what);
    });
  }
  QObject::connect(ui_->currentScreenView_, &QComboBox::activated, &dialog_,
                   [this] { tell(&SheetActions::changeScreen); });
  QObject::connect(ui_->albumView_, &QListWidget::itemSelectionChanged, &dialog_,
                   [this] { tell(&SheetActions::selectAlbum); });
}

void QtConfigureSheet::connectButtons() {
  const std::pair<const QPushButton*, Action> buttons[] = {
      {ui_->changeDirectoryView_, &SheetActions::selectDirectory},
      {ui_->rescanDirectoryView_, &SheetActions::rescanDirectory},
      {ui_->helpButton_, &SheetActions::showHelpSheet},
      {ui_->donateButton_, &SheetActions::donateDonorbox},
      {ui_->feedbackButton_, &SheetActions::feedback},
      {ui_->homepageButton_, &SheetActions::gotoHomepage},
      {ui_->applyView_, &SheetActions::closeSheet},
  };
  for (const auto& [button, action] : buttons) tellWhenPressed(*button, action);
  // Presses nothing while the button is disabled.
  const auto close = [this] { ui_->applyView_->click(); };
  QObject::connect(&dialog_, &SheetDialog::dismissed, &dialog_, close);
  QObject::connect(new QShortcut(QKeySequence::Close, &dialog_), &QShortcut::activated, &dialog_, close);
  QObject::connect(new QShortcut(QKeySequence::HelpContents, &dialog_), &QShortcut::activated, &dialog_,
                   [this] { tell(&SheetActions::showHelpSheet); });
}

void QtConfigureSheet::tellWhenPressed(const QAbstractButton& button, Action action) {
  QObject::connect(&button, &QAbstractButton::clicked, &dialog_, [this, action] { tell(action); });
}

}  // namespace lumivane
