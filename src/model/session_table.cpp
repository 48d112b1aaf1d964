// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_table.h"

#include "language/localization.h"
#include "model/speaker.h"
#include "platform/foundation/date_formats.h"

#include <algorithm>

namespace velun {

namespace {

/// One column: its name and what it shows of a line.
struct Column {
  QString heading;
  std::function<QString(const Line&)> text;
  bool isNarrow = false;
};

QString originalHeading(const CaptionSession& session) {
  const auto isSame = [&session](const Line& line) {
    return line.sourceLanguage == session.lines.front().sourceLanguage;
  };
  const bool isOneLanguage = !session.lines.empty() && session.lines.front().sourceLanguage &&
                             std::ranges::all_of(session.lines, isSame);
  return isOneLanguage ? languageName(*session.lines.front().sourceLanguage)
                       : L("Original", "원문");
}

Column translationColumn(const QString& language) {
  return {languageName(language), [language](const Line& line) {
            const auto found = line.translations.find(language);
            return found == line.translations.end() ? QString() : found->second;
          }};
}

std::vector<Column> columns(const CaptionSession& session, const ExportOptions& options) {
  std::vector<Column> result;
  const auto hasTime = [](const Line& line) {
    return !line.timestamp().isEmpty();
  };
  if (options.showsTimes && std::ranges::any_of(session.lines, hasTime)) {
    result.push_back({L("Time", "시각"), &Line::timestamp, true});
  }
  const auto hasSpeaker = [](const Line& line) {
    return line.speaker.has_value();
  };
  if (std::ranges::any_of(session.lines, hasSpeaker)) {
    result.push_back(
        {L("Speaker (estimate)", "화자(추정)"),
         [](const Line& line) { return line.speaker ? speakerName(*line.speaker) : QString(); },
         true});
  }
  if (session.computerName || session.microphoneName) {
    result.push_back({L("Source", "소스"),
                      [&session](const Line& line) { return session.inputName(line); }, true});
  }
  if (options.content != TranscriptContent::translation) {
    result.push_back({originalHeading(session), &Line::text});
  }
  if (options.content == TranscriptContent::original) return result;
  for (const QString& language : session.translationLanguages()) {
    if (!options.language || *options.language == language) {
      result.push_back(translationColumn(language));
    }
  }
  const auto hasLegacy = [](const Line& line) {
    return line.legacyTranslation.has_value();
  };
  if (std::ranges::any_of(session.lines, hasLegacy)) {
    result.push_back({L("Translation", "번역"), [](const Line& line) {
                        return line.legacyTranslation.value_or(QString());
                      }});
  }
  return result;
}

QString markdownCell(QString text) {
  text.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
  text.replace(QLatin1Char('|'), QStringLiteral("\\|"));
  text.replace(QLatin1Char('<'), QStringLiteral("&lt;"));
  return text.replace(QLatin1Char('\n'), QStringLiteral("<br>"));
}

QString markdownRow(const QStringList& cells) {
  QStringList written;
  for (const QString& cell : cells) written += markdownCell(cell);
  return QStringLiteral("| ") + written.join(QStringLiteral(" | ")) + QStringLiteral(" |\n");
}

QString htmlRow(const QStringList& cells, const QString& tag) {
  QString row = QStringLiteral("<tr>");
  for (const QString& cell : cells) {
    QString text = cell.toHtmlEscaped();
    text.replace(QLatin1Char('\n'), QStringLiteral("<br>"));
    row += QStringLiteral("<%1 dir=\"auto\">").arg(tag) + text + QStringLiteral("</%1>").arg(tag);
  }
  return row + QStringLiteral("</tr>\n");
}

/// Lines are not divided between pages, and the names of the columns stand on each of them.
const auto kStyle = QStringLiteral(
    "body { font-family: sans-serif; line-height: 1.4; }\n"
    "table { border-collapse: collapse; width: 100%; }\n"
    "th, td { border: 1px solid #999; padding: 4px 8px; text-align: start; "
    "vertical-align: top; }\n"
    "thead { display: table-header-group; }\n"
    "tr { break-inside: avoid; }\n");

QString started(const CaptionSession& session) {
  return L("Started", "시작") + QStringLiteral(": ") +
         longDateAndTime(session.startedAt, Localization::shared().locale());
}

}  // namespace

SessionTable sessionTable(const CaptionSession& session, const ExportOptions& options) {
  const std::vector<Column> shown = columns(session, options);
  SessionTable table;
  for (const Column& column : shown) {
    table.headings += column.heading;
    if (column.isNarrow) ++table.narrowColumns;
  }
  table.rows.reserve(session.lines.size());
  for (const Line& line : session.lines) {
    QStringList row;
    for (const Column& column : shown) row += column.text(line);
    table.rows.push_back(std::move(row));
  }
  return table;
}

QString renderMarkdownTable(const CaptionSession& session, const ExportOptions& options) {
  const SessionTable table = sessionTable(session, options);
  QString text = QStringLiteral("# ") + session.title + QStringLiteral("\n\n") + started(session) +
                 QStringLiteral("\n\n");
  if (table.headings.isEmpty()) return text;
  text += markdownRow(table.headings);
  text += QLatin1Char('|') + QStringLiteral(" --- |").repeated(table.headings.size()) +
          QLatin1Char('\n');
  for (const QStringList& row : table.rows) text += markdownRow(row);
  return text;
}

QString renderHtml(const CaptionSession& session, const ExportOptions& options) {
  const SessionTable table = sessionTable(session, options);
  const QString title = session.title.toHtmlEscaped();
  QString page =
      QStringLiteral("<!DOCTYPE html>\n<html lang=\"") + Localization::shared().locale().left(2) +
      QStringLiteral("\">\n<head>\n<meta charset=\"utf-8\">\n<title>") + title +
      QStringLiteral("</title>\n<style>\n") + kStyle +
      QStringLiteral("</style>\n</head>\n<body>\n<h1>") + title + QStringLiteral("</h1>\n<p>") +
      started(session).toHtmlEscaped() + QStringLiteral("</p>\n<table>\n<thead>\n");
  page += htmlRow(table.headings, QStringLiteral("th")) + QStringLiteral("</thead>\n<tbody>\n");
  for (const QStringList& row : table.rows) page += htmlRow(row, QStringLiteral("td"));
  return page + QStringLiteral("</tbody>\n</table>\n</body>\n</html>\n");
}

}  // namespace velun
