// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/modal_question.h"
#include "platform/models/model_catalogue.h"
#include "platform/models/model_store.h"
#include "platform/speech/recognizer_preferences.h"
#include "platform/speech/speech_platform.h"
#include "platform/translation/translation_platform.h"
#include "ui/common/file_panels.h"

#include <memory>

namespace velun {

class Clock;

/// The services behind the page "Languages & Models"; all of them outlive it.
struct ModelServices {
  std::shared_ptr<const ModelCatalogue> catalogue;
  ModelStore& store;
  SpeechPlatform& speech;
  TranslationPlatform& translation;
  RecognizerPreferences& preferences;
  ModalQuestion& question;
  Clock& clock;
  FilePanels panels;
};

}  // namespace velun
