// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/caption_view_model.h"
#include "platform/foundation/main_task.h"
#include "support/manual_clock.h"
#include "support/scripted_recognizer.h"
#include "support/scripted_translation_session.h"
#include "support/settle.h"

#include <functional>
#include <memory>
#include <QTemporaryDir>

namespace velun::bench {

/// Opens a translation session, as a view does.
using OpenTranslation =
    std::function<std::shared_ptr<TranslationSession>(const TranslationConfiguration&)>;

/// Answers at once.
inline std::shared_ptr<TranslationSession> openScriptedTranslation(
    const TranslationConfiguration& configuration) {
  auto script = std::make_shared<test::ScriptedTranslationSession::Script>();
  script->translate = [target = configuration.target()](const QString& text) {
    return target + QStringLiteral(": ") + text;
  };
  return std::make_shared<test::ScriptedTranslationSession>(script);
}

/// A running caption model without a window: a scripted engine, English translated to Spanish,
/// virtual time and one observer that reads what a view reads.
class LiveSession {
 public:
  explicit LiveSession(bool isTranslationOnly = false,
                       OpenTranslation open = openScriptedTranslation)
      : open_(std::move(open)) {
    settings.setLocaleID(QStringLiteral("en_US"));
    settings.setTargetID(QStringLiteral("es"));
    settings.setTranslate(true);
    settings.setShowTranslationOnly(isTranslationOnly);
    LanguageLists lists;
    auto owned = std::make_unique<test::ScriptedRecognizer>(
        std::make_shared<test::ScriptedRecognizer::Script>());
    recognizer = owned.get();
    model = std::make_unique<CaptionViewModel>(
        settings, SessionStore{QUrl::fromLocalFile(folder.filePath("Sessions"))}, std::move(owned),
        lists, clock);
    CaptionViewModel* const observed = model.get();
    for (const auto change :
         {&CaptionViewModel::sessionChanged, &CaptionViewModel::volatileTextChanged}) {
      QObject::connect(observed, change, observed, [this] { read(); });
    }
    QObject::connect(&observed->translator(), &CaptionTranslator::configurationChanged, observed,
                     [this] { openTranslation(); });
    model->start();
    test::settle();
  }

  void draft(const QString& text) { recognizer->emitEvent(DraftEvent{text}); }
  void final(const QString& text) {
    recognizer->emitEvent(FinalEvent{text, settings.localeID(), AudioInput::computer});
  }

  /// One line of speech as it comes in: drafts that grow, the final text, its translation.
  void speak(int number) {
    const QString text =
        QStringLiteral("This is what was said in line number %1 of the long talk.").arg(number);
    for (const int length : {10, 20, 30, 40, 50}) draft(text.left(length));
    final(text);
    clock.advance(std::chrono::milliseconds(2880));
  }

  test::ManualClock clock;
  AppSettings settings;
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

  void openTranslation() {
    const auto& configuration = model->translator().configuration();
    if (!configuration) return;
    startTask(model.get(),
              [this, session = open_(*configuration)] { return model->runTranslations(session); });
  }

  OpenTranslation open_;
  QTemporaryDir folder;
};

}  // namespace velun::bench
