// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/smaller_recognizer.h"
#include "ui/caption/caption_colors.h"

#include <QWidget>

namespace velun {

class CaptionButton;

/// The button beside the status that a machine is too slow. Hidden while there is nothing to offer.
class SmallerRecognizerButton final : public QWidget {
  Q_OBJECT

 public:
  /// `smaller` may be null. It must outlive the view.
  SmallerRecognizerButton(SmallerRecognizer* smaller, QWidget* parent);

  void setColors(const CaptionColors& colors);
  CaptionButton& button() const { return *button_; }
  /// 0 while there is nothing to offer.
  int neededHeight() const;

 Q_SIGNALS:
  /// It was shown or hidden.
  void offerChanged();
  /// The recognizer has to be downloaded on the page "Languages & Models".
  void modelsRequested();

 private:
  void present();
  void act();

  SmallerRecognizer* smaller_;
  CaptionButton* button_;
};

}  // namespace velun
