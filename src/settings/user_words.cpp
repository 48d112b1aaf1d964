// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/user_words.h"

#include <QSet>
#include <QStringList>

namespace velun {

namespace {

QString normalizedLine(const QString& line) {
  QString kept;
  for (const QChar character : line) {
    kept += character.category() == QChar::Other_Control ? QChar(u' ') : character;
  }
  kept = kept.simplified().left(kMaxUserWordLength).trimmed();
  // A letter of two halves may have been cut.
  if (!kept.isEmpty() && kept.back().isHighSurrogate()) kept.chop(1);
  return kept;
}

}  // namespace

QString normalizedUserWords(const QString& text) {
  QStringList words;
  QSet<QString> seen;
  for (const QString& line : text.split(u'\n')) {
    const QString word = normalizedLine(line);
    const QString folded = word.toCaseFolded();
    if (word.isEmpty() || seen.contains(folded)) continue;
    if (words.size() == kMaxUserWords) break;
    seen += folded;
    words += word;
  }
  return words.join(u'\n');
}

}  // namespace velun
