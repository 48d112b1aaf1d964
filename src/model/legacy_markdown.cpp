// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/legacy_markdown.h"

#include "language/localization.h"
#include "model/file_error_text.h"
#include "model/session_file/session_file.h"
#include "platform/foundation/file_access.h"

#include <QDateTime>
#include <QFileInfo>
#include <simdjson.h>

namespace velun {

namespace {

const QString& heading() {
  static const QString text = QStringLiteral("# 자막 세션 — ");
  return text;
}

bool isUtf8(const QByteArray& bytes) {
  return simdjson::validate_utf8(bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

bool isNewline(QChar c) {
  const char16_t unit = c.unicode();
  return (unit >= 0x0A && unit <= 0x0D) || unit == 0x85 || unit == 0x2028 || unit == 0x2029;
}

QStringView trimSpacesAndTabs(QStringView text) {
  const auto isTrimmed = [](QChar c) {
    return c == QLatin1Char(' ') || c == QLatin1Char('\t');
  };
  while (!text.isEmpty() && isTrimmed(text.front())) text = text.mid(1);
  while (!text.isEmpty() && isTrimmed(text.back())) text.chop(1);
  return text;
}

/// Parses a caption line: `time` text. Nothing if the second backquote is missing.
std::optional<Line> parseCaptionLine(QStringView text) {
  const qsizetype close = text.indexOf(QLatin1Char('`'), 1);
  if (close < 0) return std::nullopt;
  Line line;
  line.text = trimSpacesAndTabs(text.mid(close + 1)).toString();
  line.legacyTimestamp = text.mid(1, close - 1).toString();
  return line;
}

void addTranslation(Line& line, QStringView text) {
  if (line.legacyTranslation) {
    line.legacyTranslation->append(QLatin1Char('\n')).append(text);
  } else {
    line.legacyTranslation = text.toString();
  }
}

void readBodyLine(QStringView text, std::vector<Line>& lines) {
  if (text.startsWith(QLatin1Char('`'))) {
    if (std::optional<Line> line = parseCaptionLine(text)) lines.push_back(std::move(*line));
  } else if (text.startsWith(QLatin1String("> ")) && !lines.empty()) {
    addTranslation(lines.back(), text.mid(2));
  }
}

}  // namespace

std::optional<CaptionSession> parseLegacyMarkdown(const QByteArray& bytes, Instant startedAt,
                                                  const QString& title) {
  if (!isUtf8(bytes)) return std::nullopt;
  const QString text = QString::fromUtf8(bytes);
  if (!text.startsWith(heading())) return std::nullopt;
  CaptionSession session{.startedAt = startedAt, .endedAt = {}, .title = title, .lines = {}};
  qsizetype start = 0;
  bool isHeading = true;
  for (qsizetype end = 0; end <= text.size(); ++end) {
    if (end < text.size() && !isNewline(text[end])) continue;
    if (!isHeading) readBodyLine(QStringView(text).mid(start, end - start), session.lines);
    isHeading = false;
    start = end + 1;
  }
  return session;
}

Instant legacyStart(const QString& path) {
  const QString name = QFileInfo(path).completeBaseName();
  const QDateTime named = QDateTime::fromString(name, QStringLiteral("yyyy-MM-dd_HH-mm-ss"));
  if (named.isValid()) return Instant(std::chrono::milliseconds(named.toMSecsSinceEpoch()));
  return creationTime(path).value_or(currentInstant());
}

CaptionSession readLegacyMarkdown(const QUrl& url) {
  const QString path = url.toLocalFile();
  try {
    const QByteArray bytes = readWholeFile(path, kMaxSessionFileSize);
    if (!isUtf8(bytes)) {
      throw SessionError(L("“%1” is not a UTF-8 text.", "“%1” 파일은 UTF-8 텍스트가 아닙니다.")
                             .arg(QFileInfo(path).fileName()));
    }
    std::optional<CaptionSession> session =
        parseLegacyMarkdown(bytes, legacyStart(path), defaultSessionTitle());
    if (session) return std::move(*session);
    throw SessionError(L("This isn’t a transcript from an earlier version of Velun.",
                         "Velun의 이전 자막 기록 형식이 아닙니다."));
  } catch (const FileError& error) {
    throw SessionError(fileErrorText(error));
  }
}

}  // namespace velun
