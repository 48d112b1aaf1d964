// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/caption/caption_colors.h"

#include <QWidget>

class QLabel;

namespace velun {

class AppCommands;
class BetterCaptions;
class CaptionButton;
class CaptionViewModel;
class DownloadOfferView;
class LevelMeter;

/// The panel's content before the first words: the source, the language and the start button, or
/// "Captions appear here" while captions run; below, the download that the language needs or that
/// improves it.
class CaptionEmptyState final : public QWidget {
  Q_OBJECT

 public:
  /// `better` may be null. All must outlive the view.
  CaptionEmptyState(CaptionViewModel& model, AppCommands& commands, BetterCaptions* better,
                    QWidget* parent);

  void setColors(const CaptionColors& colors);

  /// Whether the status is shown instead of the texts and the start button: it says why there are
  /// no captions.
  bool givesWay() const;

  /// What is captioned, or the hint.
  QLabel& title() const { return *title_; }
  /// How captions are started or, while they run, what is captioned.
  QLabel& hint() const { return *hint_; }
  /// Whether sound arrives, while captions run.
  LevelMeter& levelMeter() const { return *meter_; }
  CaptionButton& startButton() const { return *start_; }
  DownloadOfferView& offerView() const { return *offer_; }

 Q_SIGNALS:
  /// givesWay() may have changed.
  void changed();

 protected:
  /// Gives the keyboard to the focus proxy.
  void mousePressEvent(QMouseEvent* event) override;

 private:
  void present();

  CaptionViewModel& model_;
  AppCommands& commands_;
  QLabel* title_;
  CaptionButton* start_;
  QLabel* hint_;
  LevelMeter* meter_;
  DownloadOfferView* offer_;
};

}  // namespace velun
