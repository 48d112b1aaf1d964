// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/attributed_transcript.h"

#include "language/localization.h"
#include "model/caption_session.h"

#include <QStringList>

namespace velun {

namespace {

/// Appends a text, split into paragraphs at its line breaks. Two noncharacters that QTextDocument
/// uses to mark frames are replaced by the replacement character.
/// Without the characters by which a QTextDocument marks its frames.
QString withoutFrameMarks(QString text) {
  for (const char16_t frameMark : {u'\uFDD0', u'\uFDD1'}) {
    if (text.contains(frameMark)) text.replace(frameMark, QChar::ReplacementCharacter);
  }
  return text;
}

void appendText(const QString& anyText, TranscriptStyle style, TranscriptParagraphs& to) {
  const QString text = withoutFrameMarks(anyText);
  const auto isBreak = [](QChar c) {
    return c == u'\n' || c == u'\r' || c == QChar::ParagraphSeparator;
  };
  qsizetype start = 0;
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (!isBreak(text[i])) continue;
    to.push_back({.text = text.mid(start, i - start), .style = style});
    if (text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n') ++i;
    start = i + 1;
  }
  to.push_back({.text = start == 0 ? text : text.mid(start), .style = style});
}

/// Puts a label before the first text from paragraph `first` on.
void addLabel(const LineLabel& label, std::size_t first, TranscriptParagraphs& all) {
  while (first < all.size() && all[first].style == TranscriptStyle::meta) ++first;
  if (label.name.isEmpty() || first >= all.size()) return;
  TranscriptParagraph& to = all[first];
  const QString shown = withoutFrameMarks(label.name.simplified()) + QStringLiteral(": ");
  to.text.prepend(shown);
  to.labelLength = static_cast<int>(shown.size());
  to.labelColor = label.color;
  to.labelHelp = label.help;
}

void appendPending(const QString& label, TranscriptParagraphs& to) {
  to.push_back(
      {.text = QStringLiteral(" "), .style = TranscriptStyle::placeholder, .pendingLabel = label});
}

void appendMetadata(const TranscriptInputs& inputs, const Line& line, TranscriptParagraphs& to) {
  QStringList parts = {line.timestamp()};
  const QString name = inputs.session ? inputs.session->inputName(line) : QString();
  if (!name.isEmpty()) {
    parts << name;
  } else if (line.input) {
    parts << title(*line.input);
  }
  if (line.sourceLanguage) parts << languageName(*line.sourceLanguage);
  if (line.original) parts << L("Corrected", "교정됨");
  parts.removeAll(QString());
  appendText(parts.join(QStringLiteral(" · ")), TranscriptStyle::meta, to);
}

void appendTranslations(const TranscriptInputs& inputs, const Line& line,
                        TranscriptParagraphs& to) {
  for (const auto& [language, text] : line.translatedTexts(inputs.language)) {
    if (inputs.showsMetadata) {
      const QString name = languageName(language);
      appendText(language.isEmpty() ? L("Translation · Unknown language", "번역 · 언어 미상")
                                    : L("Translation · " + name, "번역 · " + name),
                 TranscriptStyle::meta, to);
    }
    appendText(text, TranscriptStyle::translation, to);
  }
}

}  // namespace

void appendLine(const TranscriptInputs& inputs, const Line& line, TranscriptParagraphs& to) {
  if (inputs.showsMetadata) appendMetadata(inputs, line, to);
  const bool translationFirst =
      inputs.captionStyle && inputs.style.order == VoiceOrder::translationFirst;
  const std::size_t first = to.size();
  const bool translations = inputs.content != TranscriptContent::original;
  if (translations && translationFirst) appendTranslations(inputs, line, to);
  if (inputs.content != TranscriptContent::translation) {
    appendText(line.text, TranscriptStyle::body, to);
  }
  if (translations && !translationFirst) appendTranslations(inputs, line, to);
  if (inputs.labelOf) addLabel(inputs.labelOf(line), first, to);
  if (inputs.content == TranscriptContent::translation &&
      inputs.pendingTranslationIDs.contains(line.id)) {
    appendPending(L("Translating", "번역 중"), to);
  }
  if (inputs.showsMetadata) appendText(QString(), TranscriptStyle::body, to);
}

void appendDraft(const TranscriptInputs& inputs, TranscriptParagraphs& to) {
  if (inputs.content != TranscriptContent::translation) {
    for (const TranscriptDraft& draft : inputs.drafts) {
      if (draft.text.isEmpty()) continue;
      const std::size_t first = to.size();
      appendText(draft.text, TranscriptStyle::body, to);
      addLabel(draft.label, first, to);
    }
  } else if (inputs.showsPendingInput) {
    appendPending(L("Listening", "음성 입력 중"), to);
  }
}

TranscriptParagraphs attributedTranscript(const TranscriptInputs& inputs) {
  TranscriptParagraphs paragraphs;
  if (inputs.session) {
    paragraphs.reserve(inputs.session->lines.size() * 2);
    for (const Line& line : inputs.session->lines) appendLine(inputs, line, paragraphs);
  }
  appendDraft(inputs, paragraphs);
  return paragraphs;
}

}  // namespace velun
