// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/student/text_splitter.h"

#include "platform/foundation/sentences.h"

#include <QRegularExpression>

namespace velun {

namespace {

// Splits after every match and joins neighbours as long as they fit.
QStringList splitAfter(const QRegularExpression& boundary, const QString& text,
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

QStringList splitForModel(const QString& text, const QString& language, const FitsModel& fits) {
  static const QRegularExpression kClauseEnd(
      QStringLiteral("[,;:\u2013\u2014](?=\\s)\\s*|[\uFF0C\u3001\uFF1B\uFF1A\u060C\u061B]\\s*"),
      QRegularExpression::UseUnicodePropertiesOption);
  static const QRegularExpression kWordEnd(QStringLiteral("\\s+"),
                                           QRegularExpression::UseUnicodePropertiesOption);
  QStringList pieces;
  for (const QString& untrimmed : sentences(text, language)) {
    const QString sentence = untrimmed.trimmed();
    if (fits(sentence)) {
      if (!sentence.isEmpty()) pieces += sentence;
      continue;
    }
    for (const QString& clause : splitAfter(kClauseEnd, sentence, fits)) {
      if (fits(clause)) {
        pieces += clause;
      } else {
        pieces += splitAfter(kWordEnd, clause, fits);
      }
    }
  }
  return pieces;
}

}  // namespace velun
