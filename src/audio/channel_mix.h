// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/pcm_buffer.h"

#include <span>

namespace velun {

/// Writes the frames of `buffer` as interleaved floats with `channelCount` channels into `output`,
/// which has room for frameLength × channelCount values. One channel is the mean of all; of one
/// channel all are copies; else channels keep their place and missing ones are silent. 16-bit
/// samples become −1 … 1. Samples that are no sound (not finite, or beyond any loudness) become 0,
/// lest they stay in a filter.
void mixChannels(const PcmBuffer& buffer, int channelCount, std::span<float> output);

/// Appends interleaved frames in `output`'s channels to `output` in its sample kind and layout,
/// limiting 16-bit ones to full scale. They must fit; the length stays for the caller to set.
void storeFrames(std::span<const float> samples, PcmBuffer& output);

}  // namespace velun
