// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/finished_lines.h"

#include "platform/foundation/sentences.h"

#include <algorithm>

namespace velun {

namespace {

using std::chrono::milliseconds;

void setTimes(std::vector<Line>& lines, const FinalEvent::Spoken& spoken, Instant sessionStart) {
  const auto inSession = [sessionStart](Instant time) {
    return std::max(std::chrono::round<milliseconds>(time - sessionStart), milliseconds(0));
  };
  qsizetype total = 0;
  for (const Line& line : lines) total += line.text.size();
  const Instant::duration duration = std::max(spoken.end - spoken.start, Instant::duration(0));
  qsizetype before = 0;
  for (Line& line : lines) {
    const qsizetype after = before + line.text.size();
    line.start = inSession(spoken.start + duration * before / total);
    line.end = inSession(spoken.start + duration * after / total);
    before = after;
  }
}

}  // namespace

std::vector<Line> finishedLines(const FinalEvent& event, Instant now, Instant sessionStart,
                                SpeakerTracker& speakers) {
  std::vector<Line> lines;
  std::optional<QString> speaker;
  if (event.voice) speaker = speakers.next(*event.voice);
  for (const QString& sentence : sentences(event.text, event.sourceID)) {
    Line line;
    line.time = now;
    line.text = sentence.trimmed();
    line.sourceLanguage = event.sourceID;
    line.input = event.input;
    line.speaker = speaker;
    if (!line.text.isEmpty()) lines.push_back(std::move(line));
  }
  if (event.spoken) setTimes(lines, *event.spoken, sessionStart);
  return lines;
}

}  // namespace velun
