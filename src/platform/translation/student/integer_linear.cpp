// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/student/integer_linear.h"

#include "platform/translation/student/row_math.h"

#include <algorithm>
#include <numeric>

namespace velun {

namespace {

constexpr float kRange = 127.0F;

}  // namespace

IntegerLinear::IntegerLinear(IntegerMatrix matrix, const Quantization& quantization,
                             std::vector<float> bias)
    : Linear(matrix.inputs(), matrix.outputs()),
      matrix_(std::move(matrix)),
      quantization_(quantization),
      bias_(std::move(bias)) {
  bias_.resize(static_cast<std::size_t>(outputs()), 0.0F);
  weightSums_.reserve(bias_.size());
  for (int output = 0; output < outputs(); ++output) {
    const auto weights = matrix_.row(output);
    weightSums_.push_back(static_cast<float>(std::accumulate(weights.begin(), weights.end(), 0)));
  }
}

void IntegerLinear::apply(std::span<const float> x, int rowCount, std::span<float> y,
                          ProductScratch& scratch) const {
  float inputScale = quantization_.input.value_or(0.0F);
  if (!quantization_.input) {
    const float peak = rows::maxAbsolute(x);
    inputScale = peak > 0 ? kRange / peak : 1.0F;
  }
  scratch.input.resize(x.size());
  scratch.sums.resize(y.size());
  rows::quantize(x, inputScale, scratch.input);
  matrix_.multiply(scratch.input, rowCount, scratch.sums);

  // The order of the operations is that of the reference engine, so that results round the same.
  const float unit = 1.0F / (inputScale * quantization_.weights);
  const float shift = -((kRange / inputScale) * (kRange / quantization_.weights)) / kRange;
  const auto width = static_cast<std::size_t>(outputs());
  for (int row = 0; row < rowCount; ++row) {
    const std::size_t from = static_cast<std::size_t>(row) * width;
    const std::int32_t* sums = scratch.sums.data() + from;
    float* result = y.data() + from;
    for (std::size_t i = 0; i < width; ++i) {
      result[i] = static_cast<float>(sums[i]) * unit + (weightSums_[i] * shift + bias_[i]);
    }
  }
}

std::unique_ptr<Linear> IntegerLinear::selecting(std::span<const int> outputs) const {
  std::vector<std::int8_t> weights;
  std::vector<float> bias;
  weights.reserve(outputs.size() * static_cast<std::size_t>(inputs()));
  bias.reserve(outputs.size());
  for (const int output : outputs) {
    const auto row = matrix_.row(output);
    weights.insert(weights.end(), row.begin(), row.end());
    bias.push_back(bias_[static_cast<std::size_t>(output)]);
  }
  IntegerMatrix matrix(inputs(), static_cast<int>(outputs.size()), std::move(weights));
  return std::make_unique<IntegerLinear>(std::move(matrix), quantization_, std::move(bias));
}

}  // namespace velun
