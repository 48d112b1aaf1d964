// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/engine_services.h"

#include "audio/input_engines.h"
#include "audio/speech_recognition_engine.h"
#include "captions/recording_source.h"
#include "platform/foundation/language_identifier.h"
#include "platform/models/model_catalogue.h"
#include "platform/speech/built_in/built_in_punctuation.h"
#include "platform/speech/built_in/built_in_recognizer_provider.h"
#include "platform/speech/neural/neural_recognizer_provider.h"
#include "platform/speech/neural/speaker_models.h"
#include "platform/translation/linux/apertium/apertium_backend.h"
#include "platform/translation/student/student_backend.h"

#include <QCoreApplication>

namespace velun {

namespace {

ModelStoreOptions modelStoreOptions() {
  ModelStoreOptions options;
  options.root = DownloadStore::standardRoot();
  options.mirror = qEnvironmentVariable("VELUN_MODEL_MIRROR");
  return options;
}

/// The style that follows the settings. `settings` must outlive the event loop.
std::shared_ptr<const CaptionStyle> captionStyle(AppSettings& settings) {
  auto style = std::make_shared<CaptionStyle>();
  const auto update = [style, &settings] {
    style->numbersAsDigits = settings.numbersAsDigits();
    style->userWords = settings.userWords();
    style->labelsSpeakers = settings.labelsSpeakers();
  };
  update();
  QObject::connect(&settings, &AppSettings::numbersAsDigitsChanged, &settings, update);
  QObject::connect(&settings, &AppSettings::userWordsChanged, &settings, update);
  QObject::connect(&settings, &AppSettings::labelsSpeakersChanged, &settings, update);
  return style;
}

LocalSpeechPlatform::Providers recognizers(
    const ModelCatalogue& catalogue, ModelStore& models,
    const std::shared_ptr<const CaptionStyle>& style,
    const std::shared_ptr<RecognizerPreferences>& preferences) {
  const QString programs = QCoreApplication::applicationDirPath();
  const BuiltInFiles files = BuiltInFiles::installed(programs);
  const auto punctuation = std::make_shared<BuiltInPunctuation>(
      files.program, BuiltInPunctuation::installedFolder(programs));
  const auto neural = std::make_shared<NeuralRecognizerProvider>(
      catalogue, models, NeuralRecognizerProvider::installedProgram(), style,
      speedKeeper(preferences), punctuation);
  return {neural, std::make_shared<BuiltInRecognizerProvider>(files, punctuation, style)};
}

/// The recognizer with this id failed: its files may be damaged, or those of its punctuation model.
void verifyAgain(const ModelCatalogue& catalogue, DownloadStore& models, const QString& id,
                 const QString& language) {
  const Model* model = catalogue.find(id);
  if (!model) return;
  models.verifyAgain(model->id);
  if (const Model* marks = catalogue.punctuationFor(*model, language)) {
    models.verifyAgain(marks->id);
  }
}

/// In order of preference, the best first.
std::vector<std::unique_ptr<TranslatorBackend>> translators(const ModelCatalogue& catalogue,
                                                            ModelStore& models) {
  std::vector<std::unique_ptr<TranslatorBackend>> backends;
  backends.push_back(std::make_unique<StudentBackend>(catalogue.ofKind(ModelKind::translation),
                                                      models, Machine::present().memoryBytes));
  backends.push_back(std::make_unique<ApertiumBackend>());
  return backends;
}

}  // namespace

EngineServices::EngineServices(PreferenceStore& preferences)
    : settings(&preferences),
      audio(clock),
      catalogue(std::make_shared<const ModelCatalogue>(ModelCatalogue::builtIn())),
      models(*catalogue, modelStoreOptions(), clock, DownloadStore::isConnectionMetered),
      recognizerPreferences(std::make_shared<RecognizerPreferences>(&preferences)),
      style(captionStyle(settings)),
      speech(recognizers(*catalogue, models, style, recognizerPreferences), clock,
             recognizerPreferences, Machine::present(),
             std::make_shared<SpeakerModels>(catalogue, models,
                                             NeuralRecognizerProvider::installedProgram(), style)),
      translation(
          translators(*catalogue, models), [this] { return speech.supportedLocales(); }, clock) {
  QObject::connect(&models, &DownloadStore::installed, &speech,
                   &LocalSpeechPlatform::forgetFailure);
  QObject::connect(&models, &ModelStore::stateChanged, &speech, &LocalSpeechPlatform::updateRuns);
  QObject::connect(&speech, &LocalSpeechPlatform::recognizerFailed, &models,
                   [this](const QString& id, const QString& locale) {
                     verifyAgain(*catalogue, models, id, languageCode(locale));
                   });
  QObject::connect(&models, &DownloadStore::damageFound, &speech,
                   &LocalSpeechPlatform::showBriefly);
}

std::unique_ptr<SpeechRecognizing> EngineServices::makeLiveEngine(
    std::chrono::milliseconds finishTimeout) {
  const auto canceller = std::make_shared<EchoCanceller>(clock);
  const auto make = [this, &canceller, finishTimeout] {
    return std::make_unique<SpeechRecognitionEngine>(speech, audio, clock, canceller,
                                                     finishTimeout);
  };
  return std::make_unique<InputEngines>(make(), make(), canceller, clock);
}

std::unique_ptr<CaptionSource> EngineServices::makeRecordingSource(const QString& path,
                                                                   const QString& localeID,
                                                                   Instant start, bool withDrafts) {
  const QString decoder = QCoreApplication::applicationDirPath() + QStringLiteral("/velun-decoder");
  return std::make_unique<RecordingSource>(speech, decoder, path, localeID, start, withDrafts);
}

}  // namespace velun
