// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/composition.h"

#include "app/credits.h"
#include "app/settings_notes_text.h"
#include "audio/speech_recognition_engine.h"
#include "captions/better_captions.h"
#include "captions/caption_view_model.h"
#include "captions/smaller_recognizer.h"
#include "platform/audio/linux/pipewire_audio_platform.h"
#include "platform/desktop/desktop_services.h"
#include "platform/desktop/linux/dbus_file_manager.h"
#include "platform/desktop/linux/linux_tray_host.h"
#include "platform/foundation/file_preferences.h"
#include "platform/foundation/language_identifier.h"
#include "platform/foundation/system_clock.h"
#include "platform/models/model_catalogue.h"
#include "platform/models/store/download_store.h"
#include "platform/speech/built_in/built_in_punctuation.h"
#include "platform/speech/built_in/built_in_recognizer_provider.h"
#include "platform/speech/local_speech_platform.h"
#include "platform/speech/neural/neural_recognizer_provider.h"
#include "platform/translation/linux/apertium/apertium_backend.h"
#include "platform/translation/local_translation_platform.h"
#include "platform/translation/student/student_backend.h"
#include "platform/updates/https_update_feed.h"
#include "platform/updates/update_checker.h"
#include "ui/common/window_presentation.h"
#include "ui/library/session_trash.h"

namespace velun {

namespace {

class AlertQuestion final : public ModalQuestion {
 public:
  std::optional<int> ask(const Question& question) override {
    return WindowPresentation::ask(question);
  }
};

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
  };
  update();
  QObject::connect(&settings, &AppSettings::numbersAsDigitsChanged, &settings, update);
  QObject::connect(&settings, &AppSettings::userWordsChanged, &settings, update);
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

std::unique_ptr<UpdateFeed> updateFeed() {
  const QUrl address(QStringLiteral(VELUN_UPDATE_FEED));
  return address.isEmpty() ? nullptr : std::make_unique<HttpsUpdateFeed>(address);
}

SessionStore userStore() {
  const SessionStore& store = SessionStore::local();
  // Before anything opens the folder, which creates it: an existing folder is never replaced.
  store.migratePreviousFolder();
  return store;
}

}  // namespace

/// Each member depends on those above it.
struct Composition::Parts {
  explicit Parts(ApplicationService& applicationService) : application(applicationService) {}

  ApplicationService& application;
  SystemClock clock;
  FilePreferences preferences{FilePreferences::userPath()};
  AppSettings settings{&preferences};
  PipeWireAudioPlatform audio{clock};
  std::shared_ptr<const ModelCatalogue> catalogue =
      std::make_shared<const ModelCatalogue>(ModelCatalogue::builtIn());
  DownloadStore models{*catalogue, modelStoreOptions(), clock, DownloadStore::isConnectionMetered};
  std::shared_ptr<RecognizerPreferences> recognizerPreferences =
      std::make_shared<RecognizerPreferences>(&preferences);
  LocalSpeechPlatform speech{
      recognizers(*catalogue, models, captionStyle(settings), recognizerPreferences), clock,
      recognizerPreferences};
  BetterCaptions betterCaptions{speech, *catalogue, models, settings, &preferences};
  SmallerRecognizer smallerRecognizer{speech, *recognizerPreferences, settings};
  LocalTranslationPlatform translation{translators(*catalogue, models),
                                       [this] { return speech.supportedLocales(); }, clock};
  std::unique_ptr<DesktopPlatform> desktop = makeDesktopPlatform(clock);
  LinuxTrayHost trayHost{clock};
  DBusFileManager files;
  UpdateChecker updater{VELUN_VERSION, VELUN_IS_PACKAGED, updateFeed()};
  AlertQuestion question;
  SettingsNotesText notes{
      *desktop, translation,
      models,   catalogue,
      settings, BuiltInFiles::installed(QCoreApplication::applicationDirPath()).languageModel()};
  ModelServices modelServices{.catalogue = catalogue,
                              .store = models,
                              .speech = speech,
                              .translation = translation,
                              .preferences = *recognizerPreferences,
                              .question = question,
                              .clock = clock,
                              .panels = systemFilePanels()};
  CaptionViewModel model{
      settings, userStore(), std::make_unique<SpeechRecognitionEngine>(speech, audio, clock),
      speech,   translation, clock};
};

Composition::Composition(ApplicationService& application)
    : parts_(std::make_unique<Parts>(application)) {
  QObject::connect(parts_->recognizerPreferences.get(), &RecognizerPreferences::choiceChanged,
                   &parts_->betterCaptions, &BetterCaptions::update);
  QObject::connect(&parts_->models, &DownloadStore::installed, &parts_->speech,
                   &LocalSpeechPlatform::forgetFailure);
  QObject::connect(&parts_->models, &ModelStore::stateChanged, &parts_->speech,
                   &LocalSpeechPlatform::updateRuns);
  QObject::connect(&parts_->speech, &LocalSpeechPlatform::recognizerFailed, &parts_->models,
                   [this](const QString& id, const QString& locale) {
                     verifyAgain(*parts_->catalogue, parts_->models, id, languageCode(locale));
                   });
  QObject::connect(&parts_->models, &DownloadStore::damageFound, &parts_->speech,
                   &LocalSpeechPlatform::showBriefly);
  SmallerRecognizer& smaller = parts_->smallerRecognizer;
  QObject::connect(&parts_->model, &CaptionViewModel::tooSlow, &smaller, &SmallerRecognizer::find);
  QObject::connect(&parts_->model, &CaptionViewModel::isRunningChanged, &smaller, [this, &smaller] {
    parts_->model.isRunning() ? smaller.begin() : smaller.withdraw();
  });
}

Composition::~Composition() = default;

CaptionViewModel& Composition::model() {
  return parts_->model;
}

AppServices Composition::services() {
  return {.preferences = parts_->preferences,
          .desktop = *parts_->desktop,
          .translation = parts_->translation,
          .trayHost = parts_->trayHost,
          .application = parts_->application,
          .files = parts_->files,
          .updater = parts_->updater,
          .question = parts_->question,
          .clock = parts_->clock,
          .panels = systemFilePanels(),
          .trash = moveSessionToTrash,
          .notes = &parts_->notes,
          .models = &parts_->modelServices,
          .betterCaptions = &parts_->betterCaptions,
          .smallerRecognizer = &parts_->smallerRecognizer,
          .credits = credits(*parts_->catalogue)};
}

}  // namespace velun
