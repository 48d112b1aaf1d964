// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/recording_captions.h"

#include <chrono>
#include <utility>
#include <variant>

namespace velun {

RecordingCaptions::RecordingCaptions(CaptionSession session, std::unique_ptr<CaptionSource> source,
                                     const QString& localeID, const QString& target,
                                     TranslationPlatform& translation, const Clock& clock)
    : lines_(std::move(session), localeID, target, translation, clock), source_(std::move(source)) {
  connect(source_.get(), &CaptionSource::eventOccurred, this, &RecordingCaptions::handle);
  connect(source_.get(), &CaptionSource::ended, this, &RecordingCaptions::sourceEnded);
  connect(source_.get(), &CaptionSource::advanced, this,
          [this](double position, std::optional<double> duration) {
            position_ = position;
            duration_ = duration;
            Q_EMIT advanced();
          });
  connect(&lines_, &TranslatedSession::settled, this, &RecordingCaptions::finishIfComplete);
  connect(&lines_, &TranslatedSession::translationFailed, this, [this](const QString& message) {
    if (!translationError_) translationError_ = message;
  });
}

void RecordingCaptions::handle(const SpeechRecognitionEvent& event) {
  if (const auto* final = std::get_if<FinalEvent>(&event)) lines_.append(*final);
}

void RecordingCaptions::sourceEnded(const std::optional<QString>& error) {
  hasEnded_ = true;
  error_ = error;
  lines_.setEnd(session().startedAt + durationOf(position_));
  finishIfComplete();
}

void RecordingCaptions::finishIfComplete() {
  if (!hasEnded_ || (!error_ && !lines_.isSettled())) return;
  if (!std::exchange(hasFinished_, true)) Q_EMIT finished(error_);
}

}  // namespace velun
