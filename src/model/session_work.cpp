// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_work.h"

#include "language/localization.h"
#include "model/speaker.h"

#include <algorithm>
#include <QHash>
#include <QLocale>
#include <QStringList>
#include <QTextBoundaryFinder>
#include <QUuid>
#include <utility>

namespace velun {

namespace {

constexpr qsizetype kMaxTitleLength = 60;

std::size_t wordCount(const QString& text) {
  QTextBoundaryFinder finder(QTextBoundaryFinder::Word, text);
  std::size_t count = 0;
  do {
    if (finder.boundaryReasons() & QTextBoundaryFinder::StartOfItem) ++count;
  } while (finder.toNextBoundary() >= 0);
  return count;
}

std::vector<std::pair<QString, std::size_t>> sentencesBySpeaker(const std::vector<Line>& lines) {
  QHash<QString, std::size_t> counts;
  for (const Line& line : lines) {
    if (line.speaker) ++counts[*line.speaker];
  }
  std::vector<std::pair<QString, std::size_t>> ordered;
  for (const QString& speaker : speakersOf(lines)) ordered.emplace_back(speaker, counts[speaker]);
  return ordered;
}

QString countText(std::size_t count, const QString& one, const QString& several) {
  const QLocale locale(Localization::shared().locale());
  return (count == 1 ? one : several).arg(locale.toString(qulonglong(count)));
}

/// Moves the times of a line; without them, they would be too late for a file: the clock was wrong
/// at one of the sessions.
void moveTimes(Line& line, std::chrono::milliseconds later) {
  if (line.start) *line.start += later;
  if (line.end) *line.end += later;
  const auto isTooLate = [](const auto& time) {
    return time && *time > kMaxLineTime;
  };
  if (!isTooLate(line.start) && !isTooLate(line.end)) return;
  line.start.reset();
  line.end.reset();
}

}  // namespace

QString titleFromSentence(const QString& sentence) {
  const QString text = sentence.simplified();
  if (text.size() <= kMaxTitleLength) return text;
  QTextBoundaryFinder finder(QTextBoundaryFinder::Word, text);
  finder.setPosition(kMaxTitleLength);
  qsizetype end = finder.isAtBoundary() ? kMaxTitleLength : finder.toPreviousBoundary();
  if (end <= 0) end = kMaxTitleLength;
  return text.left(end).trimmed() + QStringLiteral("…");
}

CaptionSession combined(std::vector<CaptionSession> sessions) {
  std::ranges::stable_sort(sessions, {}, &CaptionSession::startedAt);
  CaptionSession result = std::move(sessions.front());
  result.id = QUuid::createUuid();
  int speakers = highestSpeaker(result.lines);
  for (auto session = sessions.begin() + 1; session != sessions.end(); ++session) {
    speakers = addToNumbers(session->lines, speakers);
    const auto later =
        std::chrono::round<std::chrono::milliseconds>(session->startedAt - result.startedAt);
    for (Line& line : session->lines) {
      moveTimes(line, later);
      result.lines.push_back(std::move(line));
    }
    if (!result.computerName) result.computerName = session->computerName;
    if (!result.microphoneName) result.microphoneName = session->microphoneName;
    if (session->endedAt) result.endedAt = std::max(result.endedAt, session->endedAt);
  }
  // Sessions that were combined before share lines, which have one id each in a file.
  for (Line& line : result.lines) line.id = QUuid::createUuid();
  return result;
}

SessionStatistics statistics(const CaptionSession& session) {
  SessionStatistics counts;
  counts.sentences = session.lines.size();
  Instant end = session.endedAt.value_or(session.startedAt);
  for (const Line& line : session.lines) {
    counts.words += wordCount(line.text);
    if (!line.translatedTexts(std::nullopt).empty()) ++counts.translatedSentences;
    if (!session.endedAt && line.time) end = std::max(end, *line.time);
  }
  counts.speakers = sentencesBySpeaker(session.lines);
  counts.length = std::chrono::floor<std::chrono::seconds>(
      std::max(end - session.startedAt, Instant::duration(0)));
  return counts;
}

QString statisticsText(const CaptionSession& session) {
  const SessionStatistics counts = statistics(session);
  QStringList rows;
  rows += countText(counts.words, L("%1 word", "단어 %1개"), L("%1 words", "단어 %1개"));
  rows +=
      countText(counts.sentences, L("%1 sentence", "문장 %1개"), L("%1 sentences", "문장 %1개"));
  if (counts.translatedSentences > 0) {
    rows += countText(counts.translatedSentences, L("%1 of them translated", "그중 번역 %1개"),
                      L("%1 of them translated", "그중 번역 %1개"));
  }
  const auto minutes = std::chrono::duration_cast<std::chrono::minutes>(counts.length).count();
  const auto seconds = (counts.length % std::chrono::minutes(1)).count();
  rows += L("Length: %1 min %2 s", "길이: %1분 %2초").arg(minutes).arg(seconds);
  constexpr auto kMinWords = 20;
  if (counts.words >= kMinWords && counts.length >= std::chrono::minutes(1)) {
    rows += L("%1 words a minute", "분당 %1단어")
                .arg(qRound(double(counts.words) * 60 / double(counts.length.count())));
  }
  for (const auto& [speaker, sentences] : counts.speakers) {
    rows += speakerLabel(speaker) + QStringLiteral(": ") +
            countText(sentences, L("%1 sentence", "문장 %1개"), L("%1 sentences", "문장 %1개"));
  }
  return rows.join(QLatin1Char('\n'));
}

}  // namespace velun
