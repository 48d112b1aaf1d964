// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/renderings.h"

#include "language/localization.h"
#include "model/speaker.h"
#include "platform/foundation/date_formats.h"

#include <QHash>
#include <QStringList>

namespace velun {

namespace {

/// The pieces in which the Markdown and the plain-text document differ.
enum class Form { markdown, text };

class Rendering {
 public:
  Rendering(Form form, const ExportOptions& options) : form_(form), options_(options) {}

  QString of(const CaptionSession& session) {
    QString document = header(session);
    for (const Line& line : session.lines) {
      const QStringList found = blocks(session, line);
      if (!found.isEmpty()) document += found.join(QStringLiteral("\n\n")) + QStringLiteral("\n\n");
    }
    return document;
  }

 private:
  QString header(const CaptionSession& session) const {
    const QString locale = Localization::shared().locale();
    QString text = form_ == Form::markdown
                       ? QStringLiteral("# ") + session.title + QStringLiteral("\n\n")
                       : session.title + QLatin1Char('\n');
    text += L("Started", "시작") + QStringLiteral(": ") +
            longDateAndTime(session.startedAt, locale) + QLatin1Char('\n');
    if (session.endedAt) {
      text += L("Stopped", "중지") + QStringLiteral(": ") +
              longDateAndTime(*session.endedAt, locale) + QLatin1Char('\n');
    }
    return text + QLatin1Char('\n');
  }

  QStringList blocks(const CaptionSession& session, const Line& line) {
    const QString timestamp = options_.showsTimes ? line.timestamp() : QString();
    QString prefix =
        timestamp.isEmpty() ? QString() : QLatin1Char('[') + timestamp + QStringLiteral("] ");
    if (line.speaker) prefix += speakerName(*line.speaker) + QStringLiteral(" · ");
    QStringList blocks;
    if (options_.content != TranscriptContent::translation) {
      blocks += source(prefix + sourceLabel(session, line), line.text);
    }
    if (options_.content != TranscriptContent::original) {
      for (const auto& [language, text] : line.translatedTexts(options_.language)) {
        blocks += translation(prefix, translationLabel(language), text);
      }
    }
    return blocks;
  }

  QString source(const QString& label, const QString& text) const {
    if (form_ == Form::text) return label + QLatin1Char('\n') + text;
    return QStringLiteral("### ") + label + QStringLiteral("\n\n") + text;
  }

  QString translation(const QString& prefix, const QString& label, const QString& text) const {
    if (form_ == Form::text) return prefix + label + QLatin1Char('\n') + text;
    QString quoted = text;
    quoted.replace(QLatin1Char('\n'), QStringLiteral("\n> "));
    return QStringLiteral("**") + label + QStringLiteral("**\n\n> ") + quoted;
  }

  QString sourceLabel(const CaptionSession& session, const Line& line) {
    const QString name = nameOf(line.sourceLanguage);
    const QString label = L("Original · ", "원문 · ") + name;
    if (!line.input) return label;
    const QString input = session.inputName(line);
    return label + QStringLiteral(" · ") + (input.isEmpty() ? title(*line.input) : input);
  }

  QString translationLabel(const QString& language) {
    const std::optional<QString> known =
        language.isEmpty() ? std::nullopt : std::optional(language);
    return L("Translation · ", "번역 · ") + nameOf(known);
  }

  QString nameOf(const std::optional<QString>& identifier) {
    if (!identifier) return L("Unknown language", "언어 미상");
    QString& name = names_[*identifier];
    if (name.isNull()) name = languageName(*identifier);
    return name;
  }

  Form form_;
  ExportOptions options_;
  /// Names already looked up: looking one up takes longer than rendering a line.
  QHash<QString, QString> names_;
};

}  // namespace

QString renderTranscript(const CaptionSession& session, TranscriptContent content,
                         const std::optional<QString>& language) {
  QStringList groups;
  for (const Line& line : session.lines) {
    const QString group = session.named(line, renderTranscript(line, content, language));
    if (!group.isEmpty()) groups += group;
  }
  return groups.join(QStringLiteral("\n\n"));
}

QString renderTranscript(const Line& line, TranscriptContent content,
                         const std::optional<QString>& language) {
  QStringList texts;
  if (content != TranscriptContent::translation) texts += line.text;
  if (content != TranscriptContent::original) {
    for (const auto& [identifier, text] : line.translatedTexts(language)) texts += text;
  }
  return texts.join(QLatin1Char('\n'));
}

QString renderMarkdown(const CaptionSession& session, const ExportOptions& options) {
  return Rendering(Form::markdown, options).of(session);
}

QString renderText(const CaptionSession& session, const ExportOptions& options) {
  return Rendering(Form::text, options).of(session);
}

}  // namespace velun
