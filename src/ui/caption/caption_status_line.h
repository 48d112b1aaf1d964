// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/common/selectable_label.h"

namespace velun {

class CaptionViewModel;
class TranslationPlatform;

/// The status of the engine, the translator and the recorder, in small text under the transcript.
/// Takes no room while it is empty; a text stays until another one replaces it.
class CaptionStatusLine final : public SelectableLabel {
  Q_OBJECT

 public:
  /// Both must outlive the view.
  CaptionStatusLine(CaptionViewModel& model, TranslationPlatform& translation, QWidget* parent);

  /// The height needed at a width, in points; 0 without a text.
  int neededHeight(int width) const;

 Q_SIGNALS:
  void textChanged();

 private:
  void present();

  CaptionViewModel& model_;
  TranslationPlatform& translation_;
};

}  // namespace velun
