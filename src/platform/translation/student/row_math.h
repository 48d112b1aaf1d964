// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>

namespace velun {

/// Arithmetic on rows of floats, written so that the compiler can use vector instructions.
namespace rows {

/// The dot product of `a` and `b`, which have the same length.
float dot(std::span<const float> a, std::span<const float> b);

/// The sum of the numbers.
float sum(std::span<const float> x);

/// y += factor · x
void addScaled(std::span<float> y, float factor, std::span<const float> x);

/// y += x
void add(std::span<float> y, std::span<const float> x);

/// Replaces negative numbers by 0.
void relu(std::span<float> x);

/// Replaces the numbers by their softmax, which adds up to 1.
void softmax(std::span<float> x);

/// The maximum absolute value.
float maxAbsolute(std::span<const float> x);

/// Rounds x · factor, half to even, limits it to -127 … 127 and adds 127.
void quantize(std::span<const float> x, float factor, std::span<std::uint8_t> result);

/// Adds the position encoding of "Attention Is All You Need" for index `position` of a sequence,
/// with sines in the first half and cosines in the second.
void addPosition(std::span<float> x, int position);

}  // namespace rows

}  // namespace velun
