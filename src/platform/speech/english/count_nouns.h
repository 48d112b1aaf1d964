// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/english/phrase.h"

namespace velun {

/// Whether a word that is counted stands at a position ("years", "people", "percent"), so that the
/// number before it is neither a year nor a time.
bool isCountNoun(const Phrase& phrase, qsizetype at);

}  // namespace velun
