// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/recording_source.h"

#include "captions/missing_models.h"
#include "platform/foundation/failure.h"

#include <algorithm>
#include <utility>

namespace velun {

RecordingSource::RecordingSource(SpeechPlatform& speech, QString decoder, QString path,
                                 QString localeID, Instant sessionStart, bool withDrafts)
    : speech_(speech),
      decoder_(std::move(decoder)),
      path_(std::move(path)),
      localeID_(std::move(localeID)),
      sessionStart_(sessionStart),
      input_(std::make_shared<SpeechInput>(withDrafts ? SpeechInput::Kind::live
                                                      : SpeechInput::Kind::recorded)) {}

RecordingSource::~RecordingSource() = default;

void RecordingSource::start() {
  try {
    const std::optional<SpeechSupport> support = speech_.support(localeID_);
    const QString locale = support ? support->locale : localeID_;
    if (std::ranges::none_of(speech_.candidates(locale), &RecognizerCandidate::isInstalled)) {
      return end(missingRecognizerText());
    }
    run_ = speech_.start(locale, input_);
  } catch (const std::exception& failure) {
    return end(descriptionOf(failure));
  }
  connect(run_.get(), &SpeechRun::resultReady, this, &RecordingSource::handle);
  connect(run_.get(), &SpeechRun::noticed, this,
          [this](const QString& notice) { Q_EMIT eventOccurred(StatusEvent{notice}); });
  connect(run_.get(), &SpeechRun::ended, this, [this](const std::optional<QString>& error) {
    if (error) error_ = error;
    end(error_);
  });
  feed_ = std::make_unique<RecordingFeed>(decoder_, path_, input_);
  connect(feed_.get(), &RecordingFeed::opened, this, [this](std::optional<double> duration) {
    duration_ = duration;
    reportPosition();
  });
  connect(feed_.get(), &RecordingFeed::ended, this,
          [this](const std::optional<QString>& error) { error_ = error; });
}

void RecordingSource::stop() {
  // What was passed on is still recognized; then the run ends.
  if (!hasEnded_) input_->finish();
}

void RecordingSource::handle(const TranscriptionResult& result) {
  reportPosition();
  const QString text = result.text.trimmed();
  if (!result.isFinal || text.isEmpty()) {
    Q_EMIT eventOccurred(DraftEvent{result.isFinal ? QString() : text});
    return;
  }
  FinalEvent event{text, localeID_};
  event.voice = result.voice;
  if (result.spoken) {
    const auto at = [this](double seconds) {
      return sessionStart_ + durationOf(seconds);
    };
    event.spoken = FinalEvent::Spoken{at(result.spoken->start), at(result.spoken->end)};
  }
  Q_EMIT eventOccurred(event);
}

void RecordingSource::reportPosition() {
  if (feed_) Q_EMIT advanced(feed_->position(), duration_);
}

void RecordingSource::end(const std::optional<QString>& error) {
  if (std::exchange(hasEnded_, true)) return;
  reportPosition();
  Q_EMIT ended(error);
}

}  // namespace velun
