// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/student/float_linear.h"

#include "platform/translation/student/row_math.h"

#include <algorithm>
#include <dnnl.h>

namespace velun {

FloatLinear::FloatLinear(int inputs, int outputs, std::vector<float> weights,
                         std::vector<float> bias)
    : Linear(inputs, outputs), weights_(std::move(weights)), bias_(std::move(bias)) {}

void FloatLinear::apply(std::span<const float> x, int rowCount, std::span<float> y,
                        ProductScratch&) const {
  dnnl_sgemm('N', 'T', rowCount, outputs(), inputs(), 1.0F, x.data(), inputs(), weights_.data(),
             inputs(), 0.0F, y.data(), outputs());
  if (bias_.empty()) return;
  const auto width = static_cast<std::size_t>(outputs());
  for (int row = 0; row < rowCount; ++row) {
    rows::add(y.subspan(static_cast<std::size_t>(row) * width, width), bias_);
  }
}

std::unique_ptr<Linear> FloatLinear::selecting(std::span<const int> outputs) const {
  const auto width = static_cast<std::size_t>(inputs());
  std::vector<float> weights;
  std::vector<float> bias;
  weights.reserve(outputs.size() * width);
  for (const int output : outputs) {
    const auto from = weights_.begin() + static_cast<std::ptrdiff_t>(output) * inputs();
    weights.insert(weights.end(), from, from + inputs());
    if (!bias_.empty()) bias.push_back(bias_[static_cast<std::size_t>(output)]);
  }
  return std::make_unique<FloatLinear>(inputs(), static_cast<int>(outputs.size()),
                                       std::move(weights), std::move(bias));
}

}  // namespace velun
