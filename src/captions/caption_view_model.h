// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "audio/speech_recognizing.h"
#include "captions/engine_chain.h"
#include "captions/pending_translations.h"
#include "captions/transcript_cache.h"
#include "model/session_store.h"
#include "platform/foundation/clock.h"
#include "platform/foundation/life.h"
#include "settings/app_settings.h"
#include "translation/caption_translator.h"

#include <functional>
#include <memory>
#include <optional>
#include <QCoroTask>
#include <QHash>
#include <QObject>
#include <QSet>
#include <QStringList>
#include <QUrl>
#include <type_traits>
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
  const CaptionSession& session() const { return session_; }
  const std::vector<Line>& lines() const { return session_.lines; }
  /// The unfinished text; empty when there is none.
  const QString& volatileText() const { return volatileText_; }
  /// The last thing that the engine had to say, in the interface language of then.
  const std::optional<QString>& status() const { return status_; }
  /// Why the last text was not translated; none once one was.
  const std::optional<QString>& translationStatus() const { return translationStatus_; }
  /// The user wants captions on; true from the command on, before the engine has started.
  bool isRunning() const { return isRunning_; }
  /// An engine operation is queued or under way; engine commands are ignored meanwhile.
  bool isTransitioning() const { return isTransitioning_; }
  /// The identifiers of the locales that can be recognized, sorted by their names in the interface
  /// language. Empty until `loadLanguages` has found them, as the next.
  const QStringList& locales() const { return locales_; }
  /// Those of the languages that can be translated into.
  const QStringList& languages() const { return languages_; }
  /// Every change of the session is written through.
  bool isSavingSession() const { return isSavingSession_; }
  /// The session's file; none before the first write, or once the file was deleted.
  const std::optional<QUrl>& savedURL() const { return savedURL_; }
  /// Why the last write failed; none when it did not.
  const std::optional<QString>& saveError() const { return saveError_; }
  const SessionStore& store() const { return store_; }
  /// For whoever opens translation sessions: its configuration and the signal of its change.
  CaptionTranslator& translator() { return translator_; }
  const std::optional<TranslationConfiguration>& translationConfig() const {
    return translator_.configuration();
  }

  /// Turns captions on: a session without lines begins now, one with lines goes on.
  void start();
  /// Turns captions off; the engine stops later, and its last results still arrive.
  void stop();
  /// As `stop`, but also while the engine is being switched, and completes when it has stopped. A
  /// queued start is not begun, one under way is cancelled.
  QCoro::Task<> shutdown();
  /// The last call before the program ends: whoever still waits for the engine is answered.
  void abandonEngine() { engineChain_.close(); }
  /// Starts the engine anew with the settings in force by then, if captions are on.
  void restart();
  /// Replaces the session; only while stopped.
  void newSession();
  /// Fetches both lists and sorts them by name.
  QCoro::Task<> loadLanguages();
  /// Band levels in dB of the input, or empty while captions are off.
  std::vector<float> meterBands() const;
  /// Translates with a session that was opened for the translator's configuration.
  QCoro::Task<> runTranslations(std::shared_ptr<TranslationSession> session);

  /// Which texts the caption window shows.
  TranscriptContent captionContent() const;
  /// Why only the original is shown although translation is on; none when it is not so.
  std::optional<QString> translationNotice() const;
  /// The transcript as shown, with the draft.
  QString captionText() const;
  /// Lines that wait for their translation.
  const QSet<QUuid>& pendingTranslationIDs() const;

  /// Writes the session's file, if it is kept saved and has lines. False when that failed.
  bool persistIfNeeded();
  /// True when the session was written; puts it in saving mode.
  bool saveCurrentSession();
  /// A session file was moved to the trash; if it was this session's, it is no longer saved.
  void savedFileWasDeleted(const QUrl& url);
  /// Whether there are lines that no file holds.
  bool hasUnsavedSession() const;

 Q_SIGNALS:
  /// The session was replaced, its times changed, or lines were appended at the end.
  void sessionChanged();
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
  void observeEngine();
  void observeTranslator();
  void observeSettings();

  OneShot<bool> beginShutdown();
  static QCoro::Task<> runRestart(std::weak_ptr<CaptionViewModel> self,
                                  std::shared_ptr<SpeechRecognizing> recognition,
                                  std::stop_token stop);
  static QCoro::Task<> runStop(std::weak_ptr<CaptionViewModel> self,
                               std::shared_ptr<SpeechRecognizing> recognition);
  static QCoro::Task<> load(std::weak_ptr<CaptionViewModel> self, LanguageLists lists);
  void startFailed(const std::optional<QString>& description);
  void stopped();
  void settingsChanged(AppSettings::Change change);
  void updateTranslation();

  void handle(const DraftEvent& event);
  void handle(const FinalEvent& event);
  void handle(const StatusEvent& event);
  void handle(const FailureEvent& event);
  void appendLine(const QString& text, const FinalEvent& event);
  const Line* lineWithID(const QUuid& id) const;
  void translated(const QUuid& id, const QString& language, const QString& text);
  void setTimes(Instant startedAt, const std::optional<Instant>& endedAt);

  bool persist(SessionStore::Flush flush);

  /// Stores the value and emits the property's signal, if it differs.
  template <class Value>
  void assign(Value& property, const std::type_identity_t<Value>& value,
              void (CaptionViewModel::*changed)()) {
    if (property == value) return;
    property = value;
    Q_EMIT(this->*changed)();
  }

  /// Makes the optional property absent and emits its signal, if it was present.
  template <class Value>
  void clear(std::optional<Value>& property, void (CaptionViewModel::*changed)()) {
    if (!property) return;
    property.reset();
    Q_EMIT(this->*changed)();
  }

  AppSettings& settings_;
  Clock& clock_;
  CaptionSession session_;
  QString volatileText_;
  std::optional<QString> status_;
  std::optional<QString> translationStatus_;
  bool isRunning_ = false;
  bool isTransitioning_ = false;
  QStringList locales_;
  QStringList languages_;
  bool isSavingSession_;
  std::optional<QUrl> savedURL_;
  std::optional<QString> saveError_;
  SessionStore store_;
  SessionEncoder encoder_;
  /// Shared with the operations under way, which it must outlive.
  std::shared_ptr<SpeechRecognizing> recognition_;
  CaptionTranslator translator_;
  LanguageLists lists_;
  QHash<QUuid, std::size_t> indexOfLine_;
  mutable PendingTranslations pending_;
  mutable TranscriptCache transcript_;
  EngineChain engineChain_;
  Life<CaptionViewModel> life_{this};
};

}  // namespace velun
