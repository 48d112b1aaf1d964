// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/subtitles/subtitle_cues.h"

#include "model/speaker.h"

#include <algorithm>
#include <utility>

namespace velun {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kShortest(1000);
constexpr milliseconds kLongest(7000);
/// Speech has about 15 columns a second.
constexpr int kMillisecondsPerColumn = 67;
/// Nobody reads more than about 20 columns a second with ease.
constexpr int kReadingMillisecondsPerColumn = 50;
/// Columns. A long stretch of time is not filled with captions shorter than this.
constexpr int kFewestColumns = 15;

milliseconds sayingTime(const QString& text) {
  return std::max(kShortest, milliseconds(columnsOf(text) * kMillisecondsPerColumn));
}

int countFor(const QString& text, milliseconds duration) {
  const auto wanted = static_cast<int>((duration + kLongest - milliseconds(1)) / kLongest);
  return std::clamp(wanted, 1, std::max(1, columnsOf(text) / kFewestColumns));
}

/// Several captions that hold the rows of original and translation side by side.
std::vector<CueRows> paired(const QString& original, const QString& translation, int minCount) {
  std::vector<CueRows> upper = breakIntoCues(original, 1, minCount);
  std::vector<CueRows> lower = breakIntoCues(translation, 1, static_cast<int>(upper.size()));
  // A sentence that fits into a row stays whole above the parts of its translation.
  if (upper.size() > 1 && lower.size() > upper.size()) {
    upper = breakIntoCues(original, 1, static_cast<int>(lower.size()));
  }
  const std::size_t count = std::max(upper.size(), lower.size());
  std::vector<CueRows> cues(count);
  // A text of fewer words stays for several captions.
  const auto add = [&cues, count](const std::vector<CueRows>& rows) {
    for (std::size_t i = 0; i < count && !rows.empty(); ++i) {
      cues[i] += rows[i * rows.size() / count];
    }
  };
  add(upper);
  add(lower);
  return cues;
}

int columnsOf(const CueRows& rows) {
  int columns = 0;
  for (const QString& row : rows) columns += velun::columnsOf(row);
  return columns;
}

/// Shares the time of a line among its captions by their lengths.
std::vector<SubtitleCue> timed(const std::vector<CueRows>& texts, milliseconds start,
                               milliseconds end) {
  int total = 0;
  for (const CueRows& rows : texts) total += columnsOf(rows);
  int before = 0;
  const auto at = [&](int columns) {
    return start + (end - start) * columns / std::max(total, 1);
  };
  std::vector<SubtitleCue> cues;
  for (const CueRows& rows : texts) {
    const int after = before + columnsOf(rows);
    cues.push_back({at(before), at(after), rows});
    before = after;
  }
  return cues;
}

}  // namespace

SubtitleTimeline::SubtitleTimeline(Instant sessionStart, TranscriptContent content,
                                   std::optional<QString> language)
    : sessionStart_(sessionStart), content_(content), language_(std::move(language)) {}

namespace {

/// The line with a name before the text that comes first.
Line named(Line line, const QString& name, TranscriptContent content) {
  if (name.isEmpty()) return line;
  const QString prefix = name + QStringLiteral(": ");
  if (content != TranscriptContent::translation) {
    line.text.prepend(prefix);
    return line;
  }
  for (auto& [language, text] : line.translations) text.prepend(prefix);
  if (line.legacyTranslation) line.legacyTranslation->prepend(prefix);
  return line;
}

}  // namespace

std::vector<SubtitleCue> SubtitleTimeline::add(const Line& line, const QString& name) {
  return add(named(line, name, content_));
}

std::vector<SubtitleCue> SubtitleTimeline::add(const Line& line) {
  const Span span = spanOf(line);
  said_ = span.end;
  std::vector<SubtitleCue> added = timed(
      rowsOf(named(line, newSpeaker(line), content_), span.end - span.start), span.start, span.end);
  if (added.empty()) return {};
  std::vector<SubtitleCue> settled = settle(added.front().start);
  unsettled_ = std::move(added);
  return settled;
}

QString SubtitleTimeline::newSpeaker(const Line& line) {
  if (!line.speaker || line.speaker == speaker_) return {};
  speaker_ = line.speaker;
  return speakerName(*line.speaker);
}

std::vector<SubtitleCue> SubtitleTimeline::finish() {
  return settle(milliseconds::max());
}

SubtitleTimeline::Span SubtitleTimeline::spanOf(const Line& line) const {
  if (line.start && line.end) return {*line.start, std::max(*line.start, *line.end)};
  const milliseconds saying = sayingTime(line.text);
  if (!line.time) return {said_, said_ + saying};
  const milliseconds finished = std::max(
      std::chrono::duration_cast<milliseconds>(*line.time - sessionStart_), milliseconds(0));
  return {std::max(std::min(said_, finished), finished - saying), finished};
}

std::vector<CueRows> SubtitleTimeline::rowsOf(const Line& line, milliseconds duration) const {
  constexpr int kRows = 2;
  const int count = countFor(line.text, duration);
  const auto translations = line.translatedTexts(language_);
  const QString translation = translations.empty() ? QString() : translations.front().second;
  switch (content_) {
    case TranscriptContent::original:
      return breakIntoCues(line.text, kRows, count);
    case TranscriptContent::translation:
      return breakIntoCues(translation, kRows, countFor(translation, duration));
    case TranscriptContent::both:
      if (translation.simplified().isEmpty()) return breakIntoCues(line.text, kRows, count);
      return paired(line.text, translation, count);
  }
  Q_UNREACHABLE();
}

/// Gives every caption its least and most time, and time to be read where there is some before the
/// next line, which starts at `next`. A caption that would start before the end of another is put
/// off.
std::vector<SubtitleCue> SubtitleTimeline::settle(milliseconds next) {
  for (std::size_t i = 0; i < unsettled_.size(); ++i) {
    SubtitleCue& cue = unsettled_[i];
    cue.start = std::max(cue.start, shown_);
    const milliseconds reading(columnsOf(cue.rows) * kReadingMillisecondsPerColumn);
    const milliseconds limit = i + 1 < unsettled_.size() ? unsettled_[i + 1].start : next;
    const milliseconds wanted = std::max(cue.end, std::min(cue.start + reading, limit));
    cue.end = std::clamp(wanted, cue.start + kShortest, cue.start + kLongest);
    shown_ = cue.end;
  }
  return std::exchange(unsettled_, {});
}

std::vector<SubtitleCue> subtitleCues(const CaptionSession& session, TranscriptContent content,
                                      const std::optional<QString>& language) {
  SubtitleTimeline timeline(session.startedAt, content, language);
  std::vector<SubtitleCue> cues;
  const auto append = [&cues](std::vector<SubtitleCue> settled) {
    cues.insert(cues.end(), settled.begin(), settled.end());
  };
  for (const Line& line : session.lines) append(timeline.add(line, session.inputName(line)));
  append(timeline.finish());
  return cues;
}

}  // namespace velun
