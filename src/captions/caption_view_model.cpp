// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/caption_view_model.h"

#include "captions/finished_lines.h"
#include "captions/update.h"
#include "language/localization.h"

#include <algorithm>
#include <QStringList>
#include <utility>
#include <variant>

namespace velun {

CaptionViewModel::CaptionViewModel(AppSettings& settings, SessionStore store,
                                   std::unique_ptr<SpeechRecognizing> recognition,
                                   SpeechPlatform& speech, TranslationPlatform& translation,
                                   Clock& clock)
    : settings_(settings),
      clock_(clock),
      current_(clock.now()),
      languages_(speech, translation),
      saver_(current_.session(), std::move(store), settings.autoSaveSessions(), clock),
      translator_(translation, current_.lines()),
      engine_(settings, std::move(recognition)) {
  connect(&languages_, &CaptionLanguages::localesChanged, this, &CaptionViewModel::localesChanged);
  connect(&languages_, &CaptionLanguages::languagesChanged, this,
          &CaptionViewModel::languagesChanged);
  connect(&saver_, &SessionSaver::isSavingChanged, this, &CaptionViewModel::isSavingSessionChanged);
  connect(&saver_, &SessionSaver::urlChanged, this, &CaptionViewModel::savedURLChanged);
  connect(&saver_, &SessionSaver::errorChanged, this, &CaptionViewModel::saveErrorChanged);
  connect(&settings_, &AppSettings::changed, this, &CaptionViewModel::settingsChanged);
  connect(&settings_, &AppSettings::inputLabelsChanged, this, &CaptionViewModel::updateInputNames);
  observeTranslator();
  observeEngine();
}

CaptionViewModel::~CaptionViewModel() = default;

void CaptionViewModel::observeTranslator() {
  connect(&translator_, &CaptionTranslator::translated, this,
          [this](const QUuid& id, const QString& language, const QString& text) {
            translated(id, language, text);
            setTranslationStatus(std::nullopt);
          });
  connect(&translator_, &CaptionTranslator::failed, this, &CaptionViewModel::setTranslationStatus);
}

void CaptionViewModel::observeEngine() {
  connect(&engine_, &EngineController::isRunningChanged, this, [this] {
    Q_EMIT isRunningChanged();
    if (isRunning()) updateTranslation();
    updateInputNames();
  });
  connect(&engine_, &EngineController::isTransitioningChanged, this,
          &CaptionViewModel::isTransitioningChanged);
  connect(&engine_, &EngineController::isSwitchingChanged, this,
          &CaptionViewModel::isSwitchingChanged);
  connect(&engine_, &EngineController::isDeviceMissingChanged, this,
          &CaptionViewModel::isDeviceMissingChanged);
  connect(&engine_, &EngineController::eventOccurred, this,
          [this](const SpeechRecognitionEvent& event) {
            std::visit([this](const auto& alternative) { handle(alternative); }, event);
          });
  connect(&engine_, &EngineController::tooSlow, this, &CaptionViewModel::tooSlow);
  connect(&engine_, &EngineController::startFailed, this, &CaptionViewModel::engineFailed);
  connect(&engine_, &EngineController::stopped, this, &CaptionViewModel::engineStopped);
}

void CaptionViewModel::start() {
  if (!engine_.isStopped()) return;
  endBeforeStart_ = session().endedAt;
  lineCountAtStart_ = lines().size();
  setTimes(lines().empty() ? clock_.now() : session().startedAt, std::nullopt);
  engine_.start();
}

void CaptionViewModel::engineFailed(const std::optional<FailureEvent>& failure) {
  if (lines().size() == lineCountAtStart_ && endBeforeStart_) {
    setTimes(session().startedAt, endBeforeStart_);
  } else {
    setEnd();
  }
  saver_.saveIfNeeded(SessionSaver::Sync::now);
  if (failure) {
    setStatus(failure->message, failure->stage);
  } else {
    setStatus(std::nullopt);
  }
  endUnneededTranslation();
}

void CaptionViewModel::setEnd() {
  // Quitting long after captions have ended does not move the end.
  if (lines().empty() || session().endedAt) return;
  setTimes(session().startedAt, clock_.now());
}

void CaptionViewModel::engineStopped() {
  clearDrafts();
  setEnd();
  saver_.saveIfNeeded(SessionSaver::Sync::now);
  endUnneededTranslation();
}

void CaptionViewModel::endUnneededTranslation() {
  if (!isRunning() && lines().empty()) updateTranslation();
}

void CaptionViewModel::newSession() {
  if (!engine_.isStopped()) return;
  current_.reset(clock_.now());
  Q_EMIT sessionChanged();
  clearDrafts();
  setStatus(std::nullopt);
  setTranslationStatus(std::nullopt);
  saver_.reset(settings_.autoSaveSessions());
  updateTranslation();
}

void CaptionViewModel::setTitle(const QString& title) {
  if (!current_.setTitle(title)) return;
  Q_EMIT sessionChanged();
  saver_.saveIfNeeded();
}

void CaptionViewModel::correctLine(const QUuid& id, const QString& text) {
  const std::optional<std::size_t> index = current_.correctLine(id, text);
  if (!index) return;
  saver_.lineChanged(*index);
  Q_EMIT lineCorrected(static_cast<int>(*index));
  Q_EMIT sessionChanged();
  saver_.saveIfNeeded();
}

void CaptionViewModel::renameSpeaker(const QString& from, const QString& to) {
  const std::vector<std::size_t> changed = current_.renameSpeaker(from, to);
  if (changed.empty()) return;
  for (const std::size_t index : changed) saver_.lineChanged(index);
  Q_EMIT speakersChanged();
  Q_EMIT sessionChanged();
  saver_.saveIfNeeded();
}

void CaptionViewModel::settingsChanged(AppSettings::Change change) {
  using Change = AppSettings::Change;
  const bool isHeardOtherwise = change == Change::input || change == Change::speakers;
  if (isHeardOtherwise || change == Change::sourceLanguage) restart();
  if (!isHeardOtherwise) updateTranslation();
  if (change == Change::input) updateInputNames();
}

void CaptionViewModel::updateTranslation() {
  setTranslationStatus(std::nullopt);
  translator_.configure(settings_.translate(), isRunning() || !lines().empty(),
                        settings_.localeID(), settings_.targetID());
}

void CaptionViewModel::handle(const DraftEvent& event) {
  setDraft(event.input, event.text);
}

void CaptionViewModel::handle(const FinalEvent& event) {
  setDraft(event.input, QString());
  const std::size_t before = lines().size();
  for (Line& line : finishedLines(event, clock_.now(), session().startedAt, current_.speakers())) {
    add(std::move(line));
  }
  if (lines().size() > before) Q_EMIT sessionChanged();
  saver_.saveIfNeeded();
}

void CaptionViewModel::add(Line line) {
  const std::size_t end = lines().size();
  const std::size_t index = current_.insertBySpeech(std::move(line), lineCountAtStart_);
  translator_.lineInserted(index);
  if (index == end) return;
  // The lines after it have moved.
  for (std::size_t i = index; i < end; ++i) saver_.lineChanged(i);
  Q_EMIT lineInserted(static_cast<int>(index));
}

void CaptionViewModel::updateInputNames() {
  const bool isBoth = isRunning() && settings_.inputChoice() == InputChoice::both;
  if (!isBoth && !session().computerName) return;
  if (!current_.setInputNames(settings_.inputName(AudioInput::computer),
                              settings_.inputName(AudioInput::microphone))) {
    return;
  }
  Q_EMIT inputNamesChanged();
  Q_EMIT sessionChanged();
  saver_.saveIfNeeded();
}

void CaptionViewModel::useDefaultDevice() {
  const std::optional<AudioInput> missing = engine_.missingInput();
  missing ? settings_.setDevice(*missing, {}) : settings_.setDevice({});
}

void CaptionViewModel::handle(const StatusEvent& event) {
  setStatus(event.text);
}

void CaptionViewModel::handle(const FailureEvent& event) {
  setStatus(event.message, event.stage);
  stop();
}

void CaptionViewModel::translated(const QUuid& id, const QString& language, const QString& text) {
  const std::optional<std::size_t> index = current_.setTranslation(id, language, text);
  if (!index) return;
  saver_.lineChanged(*index);
  Q_EMIT translationChanged(static_cast<int>(*index));
  Q_EMIT sessionChanged();
  saver_.saveIfNeeded();
}

TranscriptContent CaptionViewModel::captionContent() const {
  if (!settings_.translate() || translationNotice()) return TranscriptContent::original;
  return settings_.showTranslationOnly() ? TranscriptContent::translation : TranscriptContent::both;
}

std::optional<QString> CaptionViewModel::translationNotice() const {
  if (!settings_.translate() ||
      !CaptionTranslator::hasSameLanguage(settings_.localeID(), settings_.targetID())) {
    return std::nullopt;
  }
  return L("Input and translation languages are the same, so the original is shown.",
           "입력 언어와 번역 언어가 같아 원문을 표시합니다.");
}

QString CaptionViewModel::captionText() const {
  const TranscriptContent content = captionContent();
  const QString& transcript = current_.transcript(content, settings_.targetID());
  if (content == TranscriptContent::translation || volatileText_.isEmpty()) return transcript;
  return transcript.isEmpty() ? volatileText_ : transcript + QStringLiteral("\n\n") + volatileText_;
}

const QSet<QUuid>& CaptionViewModel::pendingTranslationIDs() const {
  static const QSet<QUuid> none;
  if (translationStatus_ || captionContent() != TranscriptContent::translation) return none;
  return current_.pendingTranslationIDs(settings_.localeID(), settings_.targetID());
}

void CaptionViewModel::setTimes(Instant startedAt, const std::optional<Instant>& endedAt) {
  if (current_.setTimes(startedAt, endedAt)) Q_EMIT sessionChanged();
}

void CaptionViewModel::setDraft(AudioInput input, const QString& text) {
  if (settings_.inputChoice() != InputChoice::both) drafts_.clear();
  const auto found = std::ranges::find(drafts_, input, &Draft::input);
  if (text.isEmpty()) {
    if (found != drafts_.end()) drafts_.erase(found);
  } else if (found != drafts_.end()) {
    found->text = text;
  } else {
    drafts_.push_back({input, text});
  }
  showDrafts();
}

void CaptionViewModel::clearDrafts() {
  drafts_.clear();
  showDrafts();
}

void CaptionViewModel::showDrafts() {
  QStringList texts;
  for (const Draft& draft : drafts_) texts += draft.text;
  if (update(volatileText_, texts.join(QLatin1Char('\n')))) Q_EMIT volatileTextChanged();
}

void CaptionViewModel::setStatus(const std::optional<QString>& status,
                                 const std::optional<FailureStage>& failure) {
  const bool isOtherFailure = update(failure_, failure);
  if (update(status_, status) || isOtherFailure) Q_EMIT statusChanged();
}

void CaptionViewModel::setTranslationStatus(const std::optional<QString>& status) {
  if (update(translationStatus_, status)) Q_EMIT translationStatusChanged();
}

}  // namespace velun
