// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/subtitles/subtitle_files.h"

namespace velun {

namespace {

/// "01:02:03" and the milliseconds after `mark`. Hours have as many digits as they need.
QString cueTime(std::chrono::milliseconds time, QLatin1Char mark) {
  const auto total = static_cast<qlonglong>(time.count());
  const auto digits = [](qlonglong number, int width) {
    return QStringLiteral("%1").arg(number, width, 10, QLatin1Char('0'));
  };
  return digits(total / 3'600'000, 2) + QLatin1Char(':') + digits(total / 60'000 % 60, 2) +
         QLatin1Char(':') + digits(total / 1000 % 60, 2) + mark + digits(total % 1000, 3);
}

QString timing(const SubtitleCue& cue, QLatin1Char mark) {
  return cueTime(cue.start, mark) + QStringLiteral(" --> ") + cueTime(cue.end, mark);
}

}  // namespace

QString renderSubRip(const SubtitleCue& cue, int number) {
  QString text = cue.rows.join(QLatin1Char('\n'));
  // The format has no escapes; a reader would take this for the times of a caption.
  text.replace(QStringLiteral("-->"), QStringLiteral("→"));
  return QString::number(number) + QLatin1Char('\n') + timing(cue, QLatin1Char(',')) +
         QLatin1Char('\n') + text + QStringLiteral("\n\n");
}

QString webVTTHead() {
  return QStringLiteral("WEBVTT\n\n");
}

QString renderWebVTT(const SubtitleCue& cue) {
  // Of HTML's escapes a reader knows these; "-->" is escaped with its ">".
  QString text = cue.rows.join(QLatin1Char('\n'));
  text.replace(QLatin1Char('&'), QStringLiteral("&amp;"))
      .replace(QLatin1Char('<'), QStringLiteral("&lt;"))
      .replace(QLatin1Char('>'), QStringLiteral("&gt;"));
  return timing(cue, QLatin1Char('.')) + QLatin1Char('\n') + text + QStringLiteral("\n\n");
}

QString renderSubRip(const std::vector<SubtitleCue>& cues) {
  QString file;
  int number = 0;
  for (const SubtitleCue& cue : cues) file += renderSubRip(cue, ++number);
  return file;
}

QString renderWebVTT(const std::vector<SubtitleCue>& cues) {
  QString file = webVTTHead();
  for (const SubtitleCue& cue : cues) file += renderWebVTT(cue);
  return file;
}

}  // namespace velun
