// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "audio/speech_recognizing.h"
#include "model/session_store.h"
#include "platform/foundation/clock.h"
#include "settings/app_settings.h"
#include "translation/caption_translator.h"

#include <functional>
#include <memory>
#include <optional>
#include <QCoroTask>
#include <QObject>
#include <QSet>
#include <QStringList>
#include <QUrl>
#include <vector>

namespace velun {

/// Where the lists of languages come from.
struct LanguageLists {
  /// Locale identifiers that can be recognized.
  std::function<QCoro::Task<QStringList>()> supportedLocales;
  /// Language identifiers that can be translated into.
  std::function<QCoro::Task<QStringList>()> supportedLanguages;
};

/// The one live model of the running caption session: starts and stops recognition, turns its
/// events into lines, sends them to translation and keeps the session saved. Main thread; a signal
/// follows every change of its property, and only a change.
class CaptionViewModel final : public QObject {
  Q_OBJECT

 public:
  /// `settings` and `clock` must outlive the model.
  CaptionViewModel(AppSettings& settings, SessionStore store,
                   std::unique_ptr<SpeechRecognizing> recognition, LanguageLists lists,
                   Clock& clock, QObject* parent = nullptr);
  ~CaptionViewModel() override;

  AppSettings& settings() const { return settings_; }
  const CaptionSession& session() const;
  const std::vector<Line>& lines() const { return session().lines; }
  /// The unfinished text; empty when there is none.
  const QString& volatileText() const;
  const std::optional<QString>& status() const;
  const std::optional<QString>& translationStatus() const;
  /// The user wants captions on; true from the command on, before the engine has started.
  bool isRunning() const;
  /// An engine operation is queued or under way; engine commands are ignored meanwhile.
  bool isTransitioning() const;
  /// Sorted by their names in the interface language.
  const QStringList& locales() const;
  const QStringList& languages() const;
  /// Every change of the session is written through.
  bool isSavingSession() const;
  const std::optional<QUrl>& savedURL() const;
  const std::optional<QString>& saveError() const;
  const SessionStore& store() const;
  /// For whoever opens translation sessions: its configuration and the signal of its change.
  CaptionTranslator& translator();

  void start();
  void stop();
  /// Completes when the engine has stopped.
  QCoro::Task<> shutdown();
  void restart();
  /// Replaces the session; only while stopped.
  void newSession();
  QCoro::Task<> loadLanguages();
  /// Band levels in dB of the input, or empty while captions are off.
  std::vector<float> meterBands() const;
  /// Translates with a session that was opened for the translator's configuration.
  QCoro::Task<> runTranslations(std::shared_ptr<TranslationSession> session);

  TranscriptContent captionContent() const;
  std::optional<QString> translationNotice() const;
  /// The transcript as shown, with the draft.
  QString captionText() const;
  /// Lines that wait for their translation.
  const QSet<QUuid>& pendingTranslationIDs() const;

  /// False when a needed write failed.
  bool persistIfNeeded();
  /// True when the session was written; puts it in saving mode.
  bool saveCurrentSession();
  void savedFileWasDeleted(const QUrl& url);
  bool hasUnsavedSession() const;

 Q_SIGNALS:
  /// The session was replaced, or its times changed.
  void sessionChanged();
  /// Lines were appended at the end, from index `first` on. `sessionChanged` follows.
  void linesAppended(int first, int count);
  /// The line at `index` got a translation. `sessionChanged` follows.
  void translationChanged(int index);
  void volatileTextChanged();
  void statusChanged();
  void translationStatusChanged();
  void isRunningChanged();
  void isTransitioningChanged();
  void localesChanged();
  void languagesChanged();
  void isSavingSessionChanged();
  void savedURLChanged();
  void saveErrorChanged();

 private:
  AppSettings& settings_;
};

}  // namespace velun
