// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/student/row_math.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace velun::rows {

namespace {

// Number of separate partial sums. With a single one the compiler must keep the order of the
// additions and cannot use vector instructions.
constexpr std::size_t kLanes = 16;

template <class Combine>
float reduce(std::size_t count, Combine combine) {
  std::array<float, kLanes> lanes{};
  std::size_t i = 0;
  for (; i + kLanes <= count; i += kLanes) {
    for (std::size_t lane = 0; lane < kLanes; ++lane) lanes[lane] += combine(i + lane);
  }
  for (; i < count; ++i) lanes[i % kLanes] += combine(i);
  float sum = 0;
  for (const float lane : lanes) sum += lane;
  return sum;
}

}  // namespace

float dot(std::span<const float> a, std::span<const float> b) {
  const float* x = a.data();
  const float* y = b.data();
  return reduce(a.size(), [x, y](std::size_t i) { return x[i] * y[i]; });
}

float sum(std::span<const float> x) {
  const float* values = x.data();
  return reduce(x.size(), [values](std::size_t i) { return values[i]; });
}

void addScaled(std::span<float> y, float factor, std::span<const float> x) {
  for (std::size_t i = 0; i < y.size(); ++i) y[i] += factor * x[i];
}

void add(std::span<float> y, std::span<const float> x) {
  for (std::size_t i = 0; i < y.size(); ++i) y[i] += x[i];
}

void relu(std::span<float> x) {
  for (float& value : x) value = std::max(value, 0.0F);
}

void softmax(std::span<float> x) {
  const float peak = *std::max_element(x.begin(), x.end());
  float sum = 0;
  for (float& value : x) {
    value = std::exp(value - peak);
    sum += value;
  }
  for (float& value : x) value /= sum;
}

float maxAbsolute(std::span<const float> x) {
  std::array<float, kLanes> lanes{};
  for (std::size_t i = 0; i < x.size(); ++i) {
    lanes[i % kLanes] = std::max(lanes[i % kLanes], std::fabs(x[i]));
  }
  return *std::max_element(lanes.begin(), lanes.end());
}

void quantize(std::span<const float> x, float factor, std::span<std::uint8_t> result) {
  // Adding 1.5 · 2^23 leaves no bits for a fraction, so the processor rounds half to even. Older
  // processors lack the rounding instruction.
  constexpr float kRounding = 12582912.0F;
  for (std::size_t i = 0; i < x.size(); ++i) {
    const float limited = std::min(127.0F, std::max(-127.0F, x[i] * factor));
    const float rounded = (limited + kRounding) - kRounding;
    result[i] = static_cast<std::uint8_t>(static_cast<std::int32_t>(rounded) + 127);
  }
}

void addPosition(std::span<float> x, int position) {
  const std::size_t half = x.size() / 2;
  const float step = std::log(10000.0F) / (static_cast<float>(half) - 1.0F);
  for (std::size_t i = 0; i < half; ++i) {
    const float angle = static_cast<float>(position) * std::exp(static_cast<float>(i) * -step);
    x[i] += std::sin(angle);
    x[half + i] += std::cos(angle);
  }
}

}  // namespace velun::rows
