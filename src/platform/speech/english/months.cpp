// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/english/months.h"

namespace velun {

bool isMonth(const Phrase& phrase, qsizetype at) {
  if (phrase.is(at, {"january", "february", "april", "june", "july", "august", "september",
                     "october", "november", "december"})) {
    return true;
  }
  return phrase.is(at, {"may", "march"}) && phrase.original(at).front().isUpper();
}

}  // namespace velun
