// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/caption_view_model.h"
#include "captions/sessions_folder.h"
#include "settings/app_settings.h"
#include "support/manual_clock.h"
#include "support/scripted_recognizer.h"
#include "support/scripted_speech_platform.h"
#include "support/scripted_translation_platform.h"
#include "support/settle.h"

#include <memory>
#include <QTest>

namespace velun::test {

/// A caption model with scripted collaborators, a temporary folder, a manual clock and a list of
/// the properties whose change it announced.
struct ModelFixture : SessionsFolder {
  using Engine = ScriptedRecognizer::Script;

  explicit ModelFixture(const std::function<void(AppSettings&)>& prepare = {},
                        TranslationPlatform* realTranslation = nullptr) {
    if (prepare) prepare(settings);
    locales.clear();
    auto owned = std::make_unique<ScriptedRecognizer>(engine);
    recognizer = owned.get();
    model =
        std::make_unique<CaptionViewModel>(settings, store, std::move(owned), speech,
                                           realTranslation ? *realTranslation : translation, clock);
    logSignals();
  }

  void start() {
    model->start();
    settle();
  }
  void stop() {
    model->stop();
    settle();
  }
  void shutdown() {
    tasks.push_back(model->shutdown());
    settle();
  }

  /// Delivers all events, and those after the session's file has reached the disk.
  void settleSaving() {
    settle();
    QVERIFY(QTest::qWaitFor([this] { return !model->isSyncing(); }, 60'000));
    settle();
  }

  void draft(const QString& text) { recognizer->emitEvent(DraftEvent{text}); }
  void final(const QString& text, const QString& source = "en_US",
             AudioInput input = AudioInput::computer) {
    recognizer->emitEvent(FinalEvent{text, source, input});
  }
  void status(const std::optional<QString>& text) { recognizer->emitEvent(StatusEvent{text}); }
  void failure(const QString& message, FailureStage stage = FailureStage::recognition) {
    recognizer->emitEvent(FailureEvent{message, stage});
  }

  void deviceMissing(bool isMissing) {
    recognizer->setMissing(isMissing ? std::optional(AudioInput::computer) : std::nullopt);
  }

  /// From the next configuration on, translations are the texts in upper case.
  void translateToUpperCase() {
    translation.translate = [](const QString& text) {
      return text.toUpper();
    };
  }

  /// What the translator in use does and has done.
  TranslationScript& translationScript() { return *translation.scripts.back(); }

  QStringList texts() const {
    QStringList texts;
    for (const Line& line : model->lines()) texts.append(line.text);
    return texts;
  }

  /// The line's Korean text; null when it has none.
  QString translationOf(std::size_t index) const {
    const Translations& translations = model->lines().at(index).translations;
    const auto found = translations.find("ko");
    return found == translations.end() ? QString() : found->second;
  }

  /// Returns the names of the properties announced since the last call, in order.
  QStringList takeSignals() { return std::exchange(signalled, {}); }

  void logSignals() {
    const auto log = [this](void (CaptionViewModel::*signal)(), const char* name) {
      QObject::connect(model.get(), signal, model.get(), [this, name] { signalled.append(name); });
    };
    using Captions = CaptionViewModel;
    log(&Captions::sessionChanged, "session");
    log(&Captions::volatileTextChanged, "volatileText");
    log(&Captions::statusChanged, "status");
    log(&Captions::translationStatusChanged, "translationStatus");
    log(&Captions::isRunningChanged, "isRunning");
    log(&Captions::isTransitioningChanged, "isTransitioning");
    log(&Captions::isSwitchingChanged, "isSwitching");
    log(&Captions::localesChanged, "locales");
    log(&Captions::languagesChanged, "languages");
    log(&Captions::isSavingSessionChanged, "isSavingSession");
    log(&Captions::savedURLChanged, "savedURL");
    log(&Captions::saveErrorChanged, "saveError");
    QObject::connect(model.get(), &Captions::translationChanged, model.get(), [this](int index) {
      signalled.append(QStringLiteral("translation %1").arg(index));
    });
  }

  ManualClock clock;
  AppSettings settings;
  ScriptedSpeechPlatform speech;
  ScriptedTranslationPlatform translation;
  QStringList& locales = speech.script->locales;
  QStringList& languages = translation.languages;
  std::shared_ptr<Engine> engine = std::make_shared<Engine>();
  ScriptedRecognizer* recognizer = nullptr;
  QStringList signalled;
  std::vector<QCoro::Task<>> tasks;
  std::unique_ptr<CaptionViewModel> model;
};

}  // namespace velun::test
