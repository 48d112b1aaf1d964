// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/helper/sherpa_stream.h"

#include <QString>

namespace velun {

/// The tokens of a phrase that goes on.
using SpokenTokens = std::span<const SherpaStream::Token>;

/// Their text.
QString textOf(SpokenTokens tokens);

/// The time of the last token that is more than punctuation, which models may write late; nullopt
/// if there is none.
std::optional<double> lastWordTime(SpokenTokens tokens);

/// Where the last `count` of `total` words begin: the middle of the pause before them, in the
/// seconds of the tokens. Nullopt if the tokens do not tell, as in scripts without blanks.
std::optional<double> beginOfLastWords(SpokenTokens tokens, std::size_t count, std::size_t total);

}  // namespace velun
