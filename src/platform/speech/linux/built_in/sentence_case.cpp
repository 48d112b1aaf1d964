// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/linux/built_in/sentence_case.h"

namespace velun {

QString sentenceCase(const QStringList& words) {
  QStringList cased = words;
  for (QString& word : cased) {
    // "i", "i'm", "i'll", "i've", "i'd"
    if (word == u"i" || word.startsWith(u"i'")) word[0] = u'I';
  }
  if (!cased.isEmpty() && !cased.first().isEmpty()) {
    cased.first()[0] = cased.first()[0].toUpper();
  }
  return cased.join(u' ');
}

}  // namespace velun
