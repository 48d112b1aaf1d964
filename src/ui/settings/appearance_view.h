// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "settings/app_settings.h"
#include "ui/settings/color_chooser.h"
#include "ui/settings/style_preview.h"

#include <vector>

class QCheckBox;
class QLabel;
class QPushButton;
class QScrollArea;
class QSlider;
class QVBoxLayout;

namespace velun {

class NoticeLabel;

/// The page of the settings that decides how the caption panel looks, with a preview. Every change
/// shows at once. Main thread.
class AppearanceView final : public QWidget {
  Q_OBJECT

 public:
  /// `settings` must outlive the view.
  explicit AppearanceView(AppSettings& settings, QWidget* parent = nullptr);

  static QString title();

  /// The width of the controls; the form scrolls vertically.
  QSize minimumSizeHint() const override;

 private:
  void addSets(QVBoxLayout* form);
  void addText(QVBoxLayout* form);
  void addBackground(QVBoxLayout* form);
  void addTranslation(QVBoxLayout* form);
  void addPanel(QVBoxLayout* form);
  void addOpacity(QVBoxLayout* form);
  void present();
  void presentTexts();
  void presentStyle();
  void presentContrast();
  void presentOpacity();
  /// Shows the slider's value without storing it.
  void previewOpacity();
  /// Changes one value of the style in use.
  template <class Change>
  void change(Change change);

  AppSettings& settings_;
  StylePreview* preview_;
  QScrollArea* scroll_;
  QLabel* backdropLabel_ = nullptr;
  QComboBox* backdrop_ = nullptr;
  QLabel* setLabel_ = nullptr;
  QComboBox* set_ = nullptr;
  QPushButton* reset_ = nullptr;
  NoticeLabel* contrast_ = nullptr;
  QLabel* textHeading_ = nullptr;
  QLabel* sizeLabel_ = nullptr;
  QComboBox* size_ = nullptr;
  QLabel* familyLabel_ = nullptr;
  QComboBox* family_ = nullptr;
  QLabel* weightLabel_ = nullptr;
  QComboBox* weight_ = nullptr;
  QLabel* spacingLabel_ = nullptr;
  QComboBox* spacing_ = nullptr;
  QLabel* colorLabel_ = nullptr;
  ColorChooser* color_ = nullptr;
  QLabel* edgeLabel_ = nullptr;
  QComboBox* edge_ = nullptr;
  QLabel* backgroundHeading_ = nullptr;
  QLabel* backgroundLabel_ = nullptr;
  ColorChooser* background_ = nullptr;
  QLabel* opacityLabel_ = nullptr;
  QLabel* opacityValue_ = nullptr;
  QSlider* opacity_ = nullptr;
  QLabel* cornerLabel_ = nullptr;
  QComboBox* corner_ = nullptr;
  QLabel* translationHeading_ = nullptr;
  QLabel* translationColorLabel_ = nullptr;
  ColorChooser* translationColor_ = nullptr;
  QLabel* ratioLabel_ = nullptr;
  QComboBox* ratio_ = nullptr;
  QLabel* orderLabel_ = nullptr;
  QComboBox* order_ = nullptr;
  QLabel* panelHeading_ = nullptr;
  QLabel* linesLabel_ = nullptr;
  QComboBox* lines_ = nullptr;
  QCheckBox* highContrast_ = nullptr;
};

}  // namespace velun
