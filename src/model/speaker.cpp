// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/speaker.h"

#include "language/localization.h"

#include <algorithm>
#include <QSet>

namespace velun {

namespace {

/// More digits, which only a file from elsewhere can have, are a name.
constexpr int kMaxDigits = 6;

bool isNumber(const QString& speaker) {
  const bool canBe = !speaker.isEmpty() && speaker.size() <= kMaxDigits;
  return canBe && std::ranges::all_of(speaker, [](QChar each) {
           return each >= QLatin1Char('0') && each <= QLatin1Char('9');
         });
}

}  // namespace

QString numberedSpeaker(int number) {
  return QString::number(number);
}

QString speakerName(const QString& speaker) {
  return isNumber(speaker) ? L("Speaker %1", "화자 %1").arg(speaker) : speaker;
}

QString speakerLabel(const QString& speaker) {
  return isNumber(speaker) ? speakerName(speaker) + QLatin1Char('?') : speaker;
}

QString speakerNamed(const QString& text) {
  QString name = text.simplified();
  QString number = name;
  if (number.endsWith(QLatin1Char('?'))) number.chop(1);
  number = number.section(QLatin1Char(' '), -1);
  if (isNumber(number) && (name == speakerName(number) || name == speakerLabel(number))) {
    return number;
  }
  return name;
}

QStringList speakersOf(const std::vector<Line>& lines) {
  QStringList speakers;
  QSet<QString> known;
  for (const Line& line : lines) {
    if (!line.speaker || known.contains(*line.speaker)) continue;
    known.insert(*line.speaker);
    speakers += *line.speaker;
  }
  return speakers;
}

std::vector<std::size_t> renameSpeaker(std::vector<Line>& lines, const QString& from,
                                       const QString& to) {
  std::vector<std::size_t> changed;
  if (from == to || to.isEmpty()) return changed;
  for (std::size_t index = 0; index < lines.size(); ++index) {
    if (lines[index].speaker != from) continue;
    lines[index].speaker = to;
    changed.push_back(index);
  }
  return changed;
}

int highestSpeaker(const std::vector<Line>& lines) {
  int highest = 0;
  for (const Line& line : lines) {
    if (line.speaker && isNumber(*line.speaker)) highest = std::max(highest, line.speaker->toInt());
  }
  return highest;
}

int addToNumbers(std::vector<Line>& lines, int offset) {
  for (Line& line : lines) {
    if (!line.speaker || !isNumber(*line.speaker)) continue;
    line.speaker = numberedSpeaker(line.speaker->toInt() + offset);
  }
  return std::max(highestSpeaker(lines), offset);
}

}  // namespace velun
