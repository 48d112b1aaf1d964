// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/english/phrase.h"

namespace velun {

/// Whether the name of a month stands at a position. "may" and "march" have other meanings and
/// count only with a capital.
bool isMonth(const Phrase& phrase, qsizetype at);

}  // namespace velun
