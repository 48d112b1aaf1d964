// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/student/text_cutter.h"

#include <memory>
#include <QRegularExpression>
#include <unicode/brkiter.h>
#include <unicode/unistr.h>

namespace velun {

namespace {

QStringList sentencesOf(const QString& text, const QString& language) {
  UErrorCode error = U_ZERO_ERROR;
  // With the standard suppressions "Mr." does not end a sentence.
  const icu::Locale locale((language + QStringLiteral("@ss=standard")).toUtf8().constData());
  const std::unique_ptr<icu::BreakIterator> boundaries(
      icu::BreakIterator::createSentenceInstance(locale, error));
  if (U_FAILURE(error)) return {text};
  const icu::UnicodeString content(reinterpret_cast<const char16_t*>(text.utf16()),
                                   static_cast<int32_t>(text.size()));
  boundaries->setText(content);
  QStringList sentences;
  int32_t start = boundaries->first();
  for (int32_t end = boundaries->next(); end != icu::BreakIterator::DONE;
       end = boundaries->next()) {
    const QString sentence = text.mid(start, end - start).trimmed();
    if (!sentence.isEmpty()) sentences += sentence;
    start = end;
  }
  return sentences;
}

// Cuts after every match and puts neighbours together again as long as they fit.
QStringList cutAfter(const QRegularExpression& boundary, const QString& text,
                     const FitsModel& fits) {
  QStringList pieces;
  qsizetype start = 0;
  qsizetype lastFitting = 0;
  const auto take = [&](qsizetype end) {
    const QString piece = text.mid(start, end - start).trimmed();
    if (!piece.isEmpty()) pieces += piece;
    start = end;
  };
  const auto consider = [&](qsizetype end) {
    if (lastFitting > start && !fits(text.mid(start, end - start).trimmed())) take(lastFitting);
    lastFitting = end;
  };
  auto matches = boundary.globalMatch(text);
  while (matches.hasNext()) consider(matches.next().capturedEnd());
  consider(text.size());
  take(text.size());
  return pieces;
}

}  // namespace

QStringList cutForModel(const QString& text, const QString& language, const FitsModel& fits) {
  static const QRegularExpression kClauseEnd(
      QStringLiteral("[,;:\u2013\u2014](?=\\s)\\s*|[\uFF0C\u3001\uFF1B\uFF1A\u060C\u061B]\\s*"),
      QRegularExpression::UseUnicodePropertiesOption);
  static const QRegularExpression kWordEnd(QStringLiteral("\\s+"),
                                           QRegularExpression::UseUnicodePropertiesOption);
  QStringList pieces;
  for (const QString& sentence : sentencesOf(text, language)) {
    if (fits(sentence)) {
      pieces += sentence;
      continue;
    }
    for (const QString& clause : cutAfter(kClauseEnd, sentence, fits)) {
      if (fits(clause)) {
        pieces += clause;
      } else {
        pieces += cutAfter(kWordEnd, clause, fits);
      }
    }
  }
  return pieces;
}

}  // namespace velun
