// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/legacy_markdown.h"

#include "model/session_file/session_problem.h"
#include "platform/foundation/file_access.h"

#include <optional>
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

CaptionSession parseLegacyMarkdown(const QByteArray& bytes, Instant startedAt,
                                   const QString& title) {
  if (!isUtf8(bytes)) throw SessionProblem{SessionProblem::Kind::transcriptNotUtf8};
  const QString text = QString::fromUtf8(bytes);
  if (!text.startsWith(heading())) throw SessionProblem{SessionProblem::Kind::notATranscript};
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

}  // namespace velun
