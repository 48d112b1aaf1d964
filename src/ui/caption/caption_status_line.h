// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>

namespace velun {

class CaptionViewModel;
class TranslationPlatform;

/// What the engine, the translator and the saving have to say, quietly, under the transcript.
/// Takes no room while there is nothing to say; a text stays until another one replaces it.
class CaptionStatusLine final : public QLabel {
  Q_OBJECT

 public:
  /// Both must outlive the view.
  CaptionStatusLine(CaptionViewModel& model, TranslationPlatform& translation, QWidget* parent);

  /// The room it needs at a width, in points; 0 without a text.
  int neededHeight(int width) const;

 Q_SIGNALS:
  void textChanged();

 private:
  void present();

  CaptionViewModel& model_;
  TranslationPlatform& translation_;
};

}  // namespace velun
