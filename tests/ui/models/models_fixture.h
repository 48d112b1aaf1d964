// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/caption_view_model.h"
#include "platform/speech/local_speech_platform.h"
#include "platform/speech/neural/neural_recognizer_provider.h"
#include "support/manual_clock.h"
#include "support/memory_preferences.h"
#include "support/scripted_model_store.h"
#include "support/scripted_question.h"
#include "support/scripted_recognizer.h"
#include "support/scripted_recognizer_backend.h"
#include "support/scripted_translation_platform.h"
#include "ui/models/model_services.h"

#include <memory>
#include <QTemporaryDir>

namespace velun::test {

/// Everything that the page "Languages & Models" needs, with a scripted store.
struct ModelsFixture {
  explicit ModelsFixture(ModelCatalogue models) : catalogue(std::move(models)) {
    builtIn->id = "built-in";
    builtIn->title = "Built-in";
    captions.loadLanguages();
  }

  ModelServices services() {
    return {.catalogue = std::make_shared<const ModelCatalogue>(catalogue),
            .store = store,
            .speech = speech,
            .translation = translation,
            .preferences = *choices,
            .question = question,
            .clock = clock,
            .panels = {.open = [this](const OpenPanelRequest&) { return chosenFile; }, .save = {}}};
  }

  ModelCatalogue catalogue;
  QTemporaryDir folder;
  ManualClock clock;
  MemoryPreferences preferences;
  AppSettings settings{&preferences};
  ScriptedModelStore store{folder.path()};
  ScriptedQuestion question;
  std::optional<QUrl> chosenFile;
  std::shared_ptr<RecognizerPreferences> choices = std::make_shared<RecognizerPreferences>();
  std::shared_ptr<ScriptedRecognizerProvider> builtIn =
      std::make_shared<ScriptedRecognizerProvider>(QStringList{"en_US"}, QStringList{"en_US"});
  LocalSpeechPlatform speech{
      {std::make_shared<NeuralRecognizerProvider>(catalogue, store, "/programs/helper"), builtIn},
      clock,
      choices,
      {.cores = 2, .memoryBytes = 8'000'000'000}};
  ScriptedTranslationPlatform translation;
  CaptionViewModel captions{
      settings,
      SessionStore{QUrl::fromLocalFile(folder.path())},
      std::make_unique<ScriptedRecognizer>(std::make_shared<ScriptedRecognizer::Script>()),
      speech,
      translation,
      clock};
};

}  // namespace velun::test
