// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/subtitles/subtitle_cues.h"

#include <algorithm>

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

struct Span {
  milliseconds start;
  milliseconds end;
};

milliseconds sayingTime(const QString& text) {
  return std::max(kShortest, milliseconds(columnsOf(text) * kMillisecondsPerColumn));
}

/// When a line was said. `previousEnd` is that of the line before.
Span spanOf(const Line& line, Instant sessionStart, milliseconds previousEnd) {
  if (line.start && line.end) return {*line.start, std::max(*line.start, *line.end)};
  const milliseconds saying = sayingTime(line.text);
  if (!line.time) return {previousEnd, previousEnd + saying};
  const milliseconds finished = std::max(
      std::chrono::duration_cast<milliseconds>(*line.time - sessionStart), milliseconds(0));
  return {std::max(std::min(previousEnd, finished), finished - saying), finished};
}

int countFor(const QString& text, milliseconds duration) {
  const auto wanted = static_cast<int>((duration + kLongest - milliseconds(1)) / kLongest);
  return std::clamp(wanted, 1, std::max(1, columnsOf(text) / kFewestColumns));
}

/// Several captions that hold the rows of original and translation side by side.
std::vector<CueRows> paired(const QString& original, const QString& translation, int minCount) {
  std::vector<CueRows> upper = breakIntoCues(original, 1, minCount);
  std::vector<CueRows> lower = breakIntoCues(translation, 1, static_cast<int>(upper.size()));
  if (lower.size() > upper.size()) {
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

/// The texts of a line as captions.
std::vector<CueRows> cuesOf(const Line& line, TranscriptContent content,
                            const std::optional<QString>& language, milliseconds duration) {
  constexpr int kRows = 2;
  const int count = countFor(line.text, duration);
  const auto translations = line.translatedTexts(language);
  const QString translation = translations.empty() ? QString() : translations.front().second;
  switch (content) {
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

int columnsOf(const CueRows& rows) {
  int columns = 0;
  for (const QString& row : rows) columns += velun::columnsOf(row);
  return columns;
}

/// Shares the time of a line among its captions by their lengths.
void appendCues(std::vector<SubtitleCue>& cues, const std::vector<CueRows>& texts,
                const Span& span) {
  int total = 0;
  for (const CueRows& rows : texts) total += columnsOf(rows);
  int before = 0;
  const auto at = [&](int columns) {
    return span.start + (span.end - span.start) * columns / std::max(total, 1);
  };
  for (const CueRows& rows : texts) {
    const int after = before + columnsOf(rows);
    cues.push_back({at(before), at(after), rows});
    before = after;
  }
}

/// Gives every caption its least and most time, and time to be read where there is some before the
/// next one. A caption that would start before the end of another is put off.
void arrange(std::vector<SubtitleCue>& cues) {
  milliseconds free(0);
  for (std::size_t i = 0; i < cues.size(); ++i) {
    SubtitleCue& cue = cues[i];
    cue.start = std::max(cue.start, free);
    const milliseconds reading(columnsOf(cue.rows) * kReadingMillisecondsPerColumn);
    const milliseconds next = i + 1 < cues.size() ? cues[i + 1].start : milliseconds::max();
    const milliseconds wanted =
        std::min(std::max(cue.end, cue.start + reading), std::max(cue.end, next));
    cue.end = std::clamp(wanted, cue.start + kShortest, cue.start + kLongest);
    free = cue.end;
  }
}

}  // namespace

std::vector<SubtitleCue> subtitleCues(const CaptionSession& session, TranscriptContent content,
                                      const std::optional<QString>& language) {
  std::vector<SubtitleCue> cues;
  milliseconds previousEnd(0);
  for (const Line& line : session.lines) {
    const Span span = spanOf(line, session.startedAt, previousEnd);
    previousEnd = span.end;
    appendCues(cues, cuesOf(line, content, language, span.end - span.start), span);
  }
  std::stable_sort(cues.begin(), cues.end(),
                   [](const SubtitleCue& a, const SubtitleCue& b) { return a.start < b.start; });
  arrange(cues);
  return cues;
}

}  // namespace velun
