// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <optional>
#include <QString>

namespace velun {

/// Which texts of a transcript are shown or rendered.
enum class TranscriptContent { both, original, translation };

inline constexpr std::array allTranscriptContents = {
    TranscriptContent::both, TranscriptContent::original, TranscriptContent::translation};

/// The identifier: "both", "original" or "translation".
QString rawValue(TranscriptContent content);

/// The content with this identifier; nothing for any other text.
std::optional<TranscriptContent> transcriptContentFromRawValue(const QString& raw);

/// The label in the interface language.
QString title(TranscriptContent content);

}  // namespace velun
