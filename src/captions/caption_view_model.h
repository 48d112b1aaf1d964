// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/caption_languages.h"
#include "captions/current_session.h"
#include "captions/engine_controller.h"
#include "captions/session_saver.h"
#include "platform/foundation/clock.h"
#include "settings/app_settings.h"
#include "translation/caption_translator.h"

#include <memory>
#include <optional>
#include <QCoroTask>
#include <QObject>
#include <QSet>
#include <QStringList>
#include <QUrl>
#include <vector>

namespace velun {

/// The captions as the windows see them: turns recognition events into lines of the current
/// session, sends the lines to translation and has the session saved. Main thread. A signal
/// follows every change of its property, and only a change.
class CaptionViewModel final : public QObject {
  Q_OBJECT

 public:
  /// `settings`, `clock` and the platforms must outlive the model.
  CaptionViewModel(AppSettings& settings, SessionStore store,
                   std::unique_ptr<SpeechRecognizing> recognition, SpeechPlatform& speech,
                   TranslationPlatform& translation, Clock& clock);
  ~CaptionViewModel() override;

  AppSettings& settings() const { return settings_; }
  const CaptionSession& session() const { return current_.session(); }
  const std::vector<Line>& lines() const { return current_.lines(); }
  /// The unfinished text; empty when there is none. With two drafts, each is a paragraph.
  const QString& volatileText() const { return volatileText_; }
  /// The unfinished text of one input.
  struct Draft {
    AudioInput input;
    QString text;
  };
  /// At most one for each input that is captioned, in the order in which they began.
  const std::vector<Draft>& drafts() const { return drafts_; }
  /// The engine's last message, localized when it was set.
  const std::optional<QString>& status() const { return status_; }
  /// What has failed and ended captions, which `status` describes; nullopt once they start again.
  const std::optional<FailureStage>& failure() const { return failure_; }
  /// Why the last translation failed; nullopt after one that succeeded.
  const std::optional<QString>& translationStatus() const { return translationStatus_; }
  /// Whether translation is on but only the original is shown, and why.
  std::optional<QString> translationNotice() const;
  /// The locales that can be recognized and the languages that can be translated into, sorted by
  /// name. Empty until `loadLanguages` completes.
  const QStringList& locales() const { return languages_.locales(); }
  const QStringList& languages() const { return languages_.languages(); }
  /// The same for choosers, with what is ready first; see `CaptionLanguages`.
  std::vector<LanguageChoice> localeChoices() const { return languages_.localeChoices(); }
  std::vector<LanguageChoice> languageChoices() const {
    return languages_.languageChoices(settings_.localeID());
  }
  CaptionTranslator& translator() { return translator_; }

  // Turning captions on and off: see `EngineController`.

  bool isRunning() const { return engine_.isRunning(); }
  bool isTransitioning() const { return engine_.isTransitioning(); }
  bool isSwitching() const { return engine_.isSwitching(); }
  /// Turns captions on. A session with lines continues; one without lines gets a new start time.
  void start();
  void stop() { engine_.stop(); }
  QCoro::Task<> shutdown() { return engine_.shutdown(); }
  void restart() { engine_.restart(); }
  /// Captions wait for the chosen device, which is not connected; the status says so.
  bool isDeviceMissing() const { return engine_.isDeviceMissing(); }
  /// Captions the default device of the input whose device is missing from now on.
  void useDefaultDevice();
  void abandonEngine() { engine_.abandon(); }
  std::vector<float> meterBands() const { return engine_.meterBands(); }

  // Saving: see `SessionSaver`.

  const SessionStore& store() const { return saver_.store(); }
  bool isSavingSession() const { return saver_.isSaving(); }
  const std::optional<QUrl>& savedURL() const { return saver_.url(); }
  const std::optional<QString>& saveError() const { return saver_.error(); }
  bool hasUnsavedSession() const { return saver_.hasUnsavedLines(); }
  /// Writes the session's file for an end of the program.
  bool persistIfNeeded() { return saver_.saveIfNeeded(SessionSaver::Sync::now); }
  bool saveCurrentSession() { return saver_.save(); }
  bool isSyncing() const { return saver_.isSyncing(); }
  OneShot<bool> synced() { return saver_.synced(); }
  void savedFileWasDeleted(const QUrl& url) { saver_.fileWasDeleted(url); }
  void savedFileIsBack(const QUrl& url) { saver_.fileIsBack(url); }

  /// Replaces the session by an empty one, if captions are off and the engine has stopped.
  void newSession();
  /// Gives the session a title; an empty one is the default title. The file follows.
  void setTitle(const QString& title);
  /// Corrects a line by hand, see `Line::correct`. The file follows.
  void correctLine(const QUuid& id, const QString& text);
  /// Renames a speaker of the session, also for lines to come, see model/speaker.h. The file
  /// follows.
  void renameSpeaker(const QString& from, const QString& to);
  QCoro::Task<> loadLanguages() { return languages_.load(); }

  /// Which texts the panel shows.
  TranscriptContent captionContent() const;
  /// The transcript as shown, with the draft.
  QString captionText() const;
  /// The lines whose translation is shown but not there yet.
  const QSet<QUuid>& pendingTranslationIDs() const;

 Q_SIGNALS:
  /// The session was replaced, its times changed, or lines were appended.
  void sessionChanged();
  /// The line at `index` got a translation. `sessionChanged` follows.
  void translationChanged(int index);
  /// A line was inserted at `index`, before others. `sessionChanged` follows.
  void lineInserted(int index);
  /// The session's names of the inputs changed. `sessionChanged` follows.
  void inputNamesChanged();
  /// The line at `index` was corrected. `sessionChanged` follows.
  void lineCorrected(int index);
  /// A speaker was renamed in some lines. `sessionChanged` follows.
  void speakersChanged();
  void volatileTextChanged();
  void statusChanged();
  void translationStatusChanged();
  void isRunningChanged();
  void isTransitioningChanged();
  void isSwitchingChanged();
  void isDeviceMissingChanged();
  void localesChanged();
  void languagesChanged();
  void isSavingSessionChanged();
  void savedURLChanged();
  void saveErrorChanged();
  /// This machine cannot keep up with the audio; the status says so.
  void tooSlow();

 private:
  void observeTranslator();
  void observeEngine();
  void settingsChanged(AppSettings::Change change);
  void updateTranslation();
  /// Cancels the download of a translation model for which no line waits.
  void endUnneededTranslation();

  void handle(const DraftEvent& event);
  void handle(const FinalEvent& event);
  void handle(const StatusEvent& event);
  void handle(const FailureEvent& event);
  void translated(const QUuid& id, const QString& language, const QString& text);
  void engineStopped();
  /// The engine could not start: captions have ended, or have not begun again.
  void engineFailed(const std::optional<FailureEvent>& failure);
  /// Sets the end of a session that has lines and no end.
  void setEnd();

  void setTimes(Instant startedAt, const std::optional<Instant>& endedAt);
  void add(Line line);
  void updateInputNames();
  void setDraft(AudioInput input, const QString& text);
  void clearDrafts();
  void showDrafts();
  void setStatus(const std::optional<QString>& status,
                 const std::optional<FailureStage>& failure = std::nullopt);
  void setTranslationStatus(const std::optional<QString>& status);

  AppSettings& settings_;
  Clock& clock_;
  CurrentSession current_;
  /// The session's end and number of lines when captions were last turned on.
  std::optional<Instant> endBeforeStart_;
  std::size_t lineCountAtStart_ = 0;
  std::vector<Draft> drafts_;
  QString volatileText_;
  std::optional<QString> status_;
  std::optional<FailureStage> failure_;
  std::optional<QString> translationStatus_;
  CaptionLanguages languages_;
  SessionSaver saver_;
  CaptionTranslator translator_;
  // Last: its destructor cancels operations while everything above still exists.
  EngineController engine_;
};

}  // namespace velun
