// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/subtitles/subtitle_cues.h"

namespace velun {

/// One caption of a SubRip file, counted from 1, with the empty line after it.
QString renderSubRip(const SubtitleCue& cue, int number);

/// The first line of a WebVTT file and the empty line after it.
QString webVTTHead();

/// One caption of a WebVTT file, with the empty line after it.
QString renderWebVTT(const SubtitleCue& cue);

/// The captions as a SubRip file (.srt).
QString renderSubRip(const std::vector<SubtitleCue>& cues);

/// The captions as a WebVTT file (.vtt), as https://www.w3.org/TR/webvtt1/ describes it.
QString renderWebVTT(const std::vector<SubtitleCue>& cues);

}  // namespace velun
