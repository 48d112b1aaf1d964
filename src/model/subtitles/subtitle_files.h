// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/subtitles/subtitle_cues.h"

namespace velun {

/// The captions as a SubRip file (.srt).
QString renderSubRip(const std::vector<SubtitleCue>& cues);

/// The captions as a WebVTT file (.vtt), as https://www.w3.org/TR/webvtt1/ describes it.
QString renderWebVTT(const std::vector<SubtitleCue>& cues);

}  // namespace velun
