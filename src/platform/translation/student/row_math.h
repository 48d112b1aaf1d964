// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>

namespace velun {

/// Arithmetic on rows of floats, written so that the compiler turns it into vector instructions.
/// Rows lie one behind the other.
namespace rows {

/// The sum of the products of `a` and `b`, which are equally long.
float dot(std::span<const float> a, std::span<const float> b);

/// The sum of the numbers.
float sum(std::span<const float> x);

/// y += factor · x
void addScaled(std::span<float> y, float factor, std::span<const float> x);

/// y += x
void add(std::span<float> y, std::span<const float> x);

/// Negative numbers become zero.
void relu(std::span<float> x);

/// Turns numbers into weights that add up to 1.
void softmax(std::span<float> x);

/// The largest absolute value.
float largest(std::span<const float> x);

/// Rounds x · factor, half to even, limits it to -127 … 127 and adds 127.
void quantize(std::span<const float> x, float factor, std::span<std::uint8_t> result);

/// Adds the sines and cosines that tell position `position` of a sequence, as in "Attention Is All
/// You Need", sines in the first half and cosines in the second.
void addPosition(std::span<float> x, int position);

}  // namespace rows

}  // namespace velun
