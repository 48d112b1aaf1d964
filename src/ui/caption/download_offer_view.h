// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/better_captions.h"
#include "ui/caption/caption_colors.h"

#include <QWidget>

class QLabel;
class QProgressBar;

namespace velun {

class CaptionButton;
class CaptionViewModel;

/// Offers a download in the panel's empty state, shows its progress and controls it. Hidden while
/// there is nothing to offer.
class DownloadOfferView final : public QWidget {
  Q_OBJECT

 public:
  /// `better` may be null. Both must outlive the view.
  DownloadOfferView(CaptionViewModel& model, BetterCaptions* better, QWidget* parent);

  void setColors(const CaptionColors& colors);

  QLabel& text() const { return *text_; }
  QProgressBar& progress() const { return *progress_; }
  /// Downloads, pauses, continues or tries again.
  CaptionButton& mainButton() const { return *main_; }
  /// Cancels or declines.
  CaptionButton& otherButton() const { return *other_; }

 Q_SIGNALS:
  /// The user wants to see the page "Languages & Models".
  void modelsRequested();
  /// The view was shown or hidden.
  void shownChanged();

 private:
  void arrange();
  void present();
  void presentOffer(const BetterCaptions::Offer& offer);
  void presentUntouched(const BetterCaptions::Offer& offer);
  void showText(const QString& text);
  void showButtons(const QString& mainText, const QString& otherText);
  void act();
  void withdraw();

  CaptionViewModel& model_;
  BetterCaptions* better_;
  QLabel* text_;
  QProgressBar* progress_;
  CaptionButton* main_;
  CaptionButton* other_;
  ModelState::Stage stage_ = ModelState::Stage::absent;
  bool asksAboutMeter_ = false;
};

}  // namespace velun
