// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/composition.h"

#include "app/credits.h"
#include "app/engine_services.h"
#include "app/settings_notes_text.h"
#include "audio/speech_recognition_engine.h"
#include "captions/better_captions.h"
#include "captions/caption_view_model.h"
#include "captions/smaller_recognizer.h"
#include "platform/desktop/desktop_services.h"
#include "platform/desktop/linux/autostart_entry.h"
#include "platform/desktop/linux/dbus_caption_feed.h"
#include "platform/desktop/linux/dbus_file_manager.h"
#include "platform/desktop/linux/linux_sound_settings.h"
#include "platform/desktop/linux/linux_tray_host.h"
#include "platform/foundation/file_preferences.h"
#include "platform/speech/built_in/built_in_recognizer_provider.h"
#include "platform/updates/https_update_feed.h"
#include "platform/updates/update_checker.h"
#include "settings/library_settings.h"
#include "settings/sharing_settings.h"
#include "ui/common/speaker_question.h"
#include "ui/common/title_question.h"
#include "ui/common/window_presentation.h"
#include "ui/library/line_correction.h"
#include "ui/library/print_session.h"
#include "ui/library/session_trash.h"

namespace velun {

namespace {

class AlertQuestion final : public ModalQuestion {
 public:
  std::optional<int> ask(const Question& question) override {
    return WindowPresentation::ask(question);
  }
};

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
  FilePreferences preferences{FilePreferences::userPath()};
  EngineServices engine{preferences};
  BetterCaptions betterCaptions{engine.speech, *engine.catalogue, engine.models, engine.settings,
                                &preferences};
  SmallerRecognizer smallerRecognizer{engine.speech, *engine.recognizerPreferences,
                                      engine.settings};
  std::unique_ptr<DesktopPlatform> desktop = makeDesktopPlatform(engine.clock);
  std::unique_ptr<GlobalShortcuts> shortcuts = makeGlobalShortcuts();
  LinuxTrayHost trayHost{engine.clock};
  DBusFileManager files;
  LinuxSoundSettings soundSettings;
  AutostartEntry loginStart{QCoreApplication::applicationName(),
                            QCoreApplication::applicationFilePath()};
  UpdateChecker updater{VELUN_VERSION, VELUN_IS_PACKAGED, updateFeed()};
  AlertQuestion question;
  SharingSettings sharing{&preferences};
  DBusCaptionFeed feed;
  LibrarySettings library{&preferences};
  SettingsNotesText notes{
      *desktop,
      engine.translation,
      engine.models,
      engine.catalogue,
      engine.settings,
      BuiltInFiles::installed(QCoreApplication::applicationDirPath()).languageModel()};
  ModelServices modelServices{.catalogue = engine.catalogue,
                              .store = engine.models,
                              .speech = engine.speech,
                              .translation = engine.translation,
                              .preferences = *engine.recognizerPreferences,
                              .question = question,
                              .clock = engine.clock,
                              .panels = systemFilePanels()};
  CaptionViewModel model{engine.settings,
                         userStore(),
                         engine.makeLiveEngine(SpeechRecognitionEngine::kDefaultFinishTimeout),
                         engine.speech,
                         engine.translation,
                         engine.clock};
};

Composition::Composition(ApplicationService& application)
    : parts_(std::make_unique<Parts>(application)) {
  QObject::connect(parts_->engine.recognizerPreferences.get(),
                   &RecognizerPreferences::choiceChanged, &parts_->betterCaptions,
                   &BetterCaptions::update);
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
          .translation = parts_->engine.translation,
          .trayHost = parts_->trayHost,
          .application = parts_->application,
          .files = parts_->files,
          .updater = parts_->updater,
          .question = parts_->question,
          .clock = parts_->engine.clock,
          .panels = systemFilePanels(),
          .trash = moveSessionToTrash,
          .notes = &parts_->notes,
          .models = &parts_->modelServices,
          .betterCaptions = &parts_->betterCaptions,
          .smallerRecognizer = &parts_->smallerRecognizer,
          .loginStart = &parts_->loginStart,
          .audio = &parts_->engine.audio,
          .soundSettings = &parts_->soundSettings,
          .shortcuts = parts_->shortcuts.get(),
          .sharing = &parts_->sharing,
          .feed = &parts_->feed,
          .askTitle = askTitle,
          .askCorrection = askCorrection,
          .askSpeaker = askSpeaker,
          .askPrinter = askPrinter,
          .library = &parts_->library,
          .recordingSource =
              [this](const QString& path, const QString& localeID, Instant start) {
                return parts_->engine.makeRecordingSource(path, localeID, start, false);
              },
          .credits = credits(*parts_->engine.catalogue)};
}

}  // namespace velun
