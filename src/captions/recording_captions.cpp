// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/recording_captions.h"

#include "captions/finished_lines.h"

#include <chrono>
#include <utility>
#include <variant>

namespace velun {

RecordingCaptions::RecordingCaptions(CaptionSession session, std::unique_ptr<CaptionSource> source,
                                     const QString& localeID, const QString& target,
                                     TranslationPlatform& translation, const Clock& clock)
    : session_(std::move(session)),
      source_(std::move(source)),
      clock_(clock),
      translator_(translation, session_.lines) {
  connect(source_.get(), &CaptionSource::eventOccurred, this, &RecordingCaptions::handle);
  connect(source_.get(), &CaptionSource::ended, this, &RecordingCaptions::sourceEnded);
  connect(source_.get(), &CaptionSource::advanced, this,
          [this](double position, std::optional<double> duration) {
            position_ = position;
            duration_ = duration;
            Q_EMIT advanced();
          });
  connect(&translator_, &CaptionTranslator::translated, this,
          [this](const QUuid&, const QString& language, const QString& text) {
            session_.lines[settled_++].translations[language] = text;
            settle();
          });
  connect(&translator_, &CaptionTranslator::failed, this, [this] {
    ++settled_;
    settle();
  });
  translator_.configure(!target.isEmpty(), true, localeID, target);
}

void RecordingCaptions::handle(const SpeechRecognitionEvent& event) {
  const auto* final = std::get_if<FinalEvent>(&event);
  if (!final) return;
  std::vector<Line> lines = finishedLines(*final, clock_.now(), session_.startedAt, speakers_);
  for (Line& line : lines) {
    // The time at which the words are in the recording, not that at which they were recognized.
    if (line.end) line.time = session_.startedAt + *line.end;
    session_.lines.push_back(std::move(line));
  }
  translator_.linesAppended();
  if (!translator_.isActive()) settled_ = session_.lines.size();
}

void RecordingCaptions::sourceEnded(const std::optional<QString>& error) {
  hasEnded_ = true;
  error_ = error;
  session_.endedAt = session_.startedAt + std::chrono::round<Instant::duration>(
                                              std::chrono::duration<double>(position_));
  settle();
}

void RecordingCaptions::settle() {
  if (!hasEnded_ || (!error_ && settled_ < session_.lines.size())) return;
  if (!std::exchange(hasFinished_, true)) Q_EMIT finished(error_);
}

}  // namespace velun
