// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/models/model_file_adder.h"
#include "ui/models/speaker_model_list.h"
#include "ui/models/speech_models.h"
#include "ui/models/translation_models.h"

#include <QWidget>

namespace velun {

/// The settings page "Languages & Models" with the lists that it shows. Main thread.
class ModelsPage final : public QWidget {
  Q_OBJECT

 public:
  /// `captions` and everything in `services` must outlive the page.
  ModelsPage(CaptionViewModel& captions, const ModelServices& services);

  /// The title of the page in the interface language.
  static QString title();

 private:
  SpeechModels speech_;
  TranslationModels translation_;
  SpeakerModelList speakers_;
  ModelFileAdder files_;
};

}  // namespace velun
