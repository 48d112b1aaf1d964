// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_format.h"

#include "language/localization.h"
#include "platform/foundation/date_formats.h"

namespace velun {

bool isSubtitles(SessionFormat format) {
  return format == SessionFormat::subRip || format == SessionFormat::webVTT;
}

bool isTable(SessionFormat format) {
  return format == SessionFormat::markdownTable || format == SessionFormat::html;
}

QString rawValue(SessionFormat format) {
  switch (format) {
    case SessionFormat::markdown:
      return QStringLiteral("markdown");
    case SessionFormat::text:
      return QStringLiteral("text");
    case SessionFormat::markdownTable:
      return QStringLiteral("markdownTable");
    case SessionFormat::html:
      return QStringLiteral("html");
    case SessionFormat::subRip:
      return QStringLiteral("subRip");
    case SessionFormat::webVTT:
      return QStringLiteral("webVTT");
    case SessionFormat::json:
      return QStringLiteral("json");
  }
  Q_UNREACHABLE();
}

QString fileExtension(SessionFormat format) {
  switch (format) {
    case SessionFormat::markdown:
      return QStringLiteral("md");
    case SessionFormat::text:
      return QStringLiteral("txt");
    case SessionFormat::markdownTable:
      return QStringLiteral("md");
    case SessionFormat::html:
      return QStringLiteral("html");
    case SessionFormat::subRip:
      return QStringLiteral("srt");
    case SessionFormat::webVTT:
      return QStringLiteral("vtt");
    case SessionFormat::json:
      return QStringLiteral("json");
  }
  Q_UNREACHABLE();
}

QString title(SessionFormat format) {
  switch (format) {
    case SessionFormat::markdown:
      return L("Markdown (.md)", "Markdown (.md)");
    case SessionFormat::text:
      return L("Text (.txt)", "텍스트 (.txt)");
    case SessionFormat::markdownTable:
      return L("Markdown Table (.md)", "Markdown 표 (.md)");
    case SessionFormat::html:
      return L("Web Page (.html)", "웹 페이지 (.html)");
    case SessionFormat::subRip:
      return L("SubRip Subtitles (.srt)", "SubRip 자막 (.srt)");
    case SessionFormat::webVTT:
      return L("WebVTT Subtitles (.vtt)", "WebVTT 자막 (.vtt)");
    case SessionFormat::json:
      return L("Velun Session (.json)", "Velun 기록 (.json)");
  }
  Q_UNREACHABLE();
}

QString explanation(SessionFormat format) {
  if (format == SessionFormat::json) {
    return L("Keeps the original, all translations, and times, and can be reopened in Velun.",
             "원문·모든 번역·시간을 보존하며 Velun에서 다시 열 수 있습니다.");
  }
  if (isSubtitles(format)) {
    return L("Captions for video players, at the times at which the words were said.",
             "말한 시각에 맞춰 표시되는 동영상 플레이어용 자막입니다.");
  }
  if (isTable(format)) {
    return L("Shows the original and its translations side by side, one line a row.",
             "원문과 번역을 한 줄씩 나란히 표시합니다.");
  }
  return L("Shows times and languages, with the original and translations set apart.",
           "시간과 언어를 표시하고 원문과 번역을 구분합니다.");
}

QString defaultFileName(SessionFormat format, Instant startedAt) {
  return QStringLiteral("Velun-") + isoDate(startedAt) + QLatin1Char('.') + fileExtension(format);
}

}  // namespace velun
