// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/caption_view_model.h"
#include "support/manual_clock.h"
#include "support/scripted_recognizer.h"
#include "support/scripted_speech_platform.h"
#include "support/scripted_translation_platform.h"
#include "support/settle.h"

#include <functional>
#include <memory>
#include <QTemporaryDir>

namespace velun::bench {

/// A running caption model without a window: a scripted engine, English translated to Spanish,
/// virtual time and one observer that reads what a view reads.
class RunningCaptions {
 public:
  /// Without `realTranslation` texts are translated at once.
  explicit RunningCaptions(bool isTranslationOnly = false,
                           TranslationPlatform* realTranslation = nullptr) {
    translation.translate = [](const QString& text) {
      return QStringLiteral("es: ") + text;
    };
    settings.setLocaleID(QStringLiteral("en_US"));
    settings.setTargetID(QStringLiteral("es"));
    settings.setTranslate(true);
    settings.setShowTranslationOnly(isTranslationOnly);
    auto owned = std::make_unique<test::ScriptedRecognizer>(
        std::make_shared<test::ScriptedRecognizer::Script>());
    recognizer = owned.get();
    model = std::make_unique<CaptionViewModel>(
        settings, SessionStore{QUrl::fromLocalFile(folder.filePath("Sessions"))}, std::move(owned),
        speech, realTranslation ? *realTranslation : translation, clock);
    CaptionViewModel* const observed = model.get();
    for (const auto change :
         {&CaptionViewModel::sessionChanged, &CaptionViewModel::volatileTextChanged}) {
      QObject::connect(observed, change, observed, [this] { read(); });
    }
    model->start();
    test::settle();
  }

  void draft(const QString& text) { recognizer->emitEvent(DraftEvent{text}); }
  void final(const QString& text) {
    recognizer->emitEvent(FinalEvent{text, settings.localeID(), AudioInput::computer});
  }

  /// Delivers one line of speech: growing drafts, the final text, its translation.
  void speak(int number) {
    const QString text =
        QStringLiteral("This is what was said in line number %1 of the long talk.").arg(number);
    for (const int length : {10, 20, 30, 40, 50}) draft(text.left(length));
    final(text);
    clock.advance(std::chrono::milliseconds(2880));
  }

  test::ManualClock clock;
  AppSettings settings;
  test::ScriptedSpeechPlatform speech;
  test::ScriptedTranslationPlatform translation;
  test::ScriptedRecognizer* recognizer = nullptr;
  std::unique_ptr<CaptionViewModel> model;
  /// Keeps the observer's work from being optimised away.
  qsizetype readings = 0;

 private:
  void read() {
    readings += model->volatileText().size() + static_cast<qsizetype>(model->lines().size()) +
                static_cast<qsizetype>(model->captionContent()) +
                model->pendingTranslationIDs().size();
  }

  QTemporaryDir folder;
};

}  // namespace velun::bench
