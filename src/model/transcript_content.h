// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <QString>

namespace velun {

/// Which texts of a transcript are shown or rendered.
enum class TranscriptContent { both, original, translation };

inline constexpr std::array allTranscriptContents = {
    TranscriptContent::both, TranscriptContent::original, TranscriptContent::translation};

/// The label in the interface language.
QString title(TranscriptContent content);

}  // namespace velun
