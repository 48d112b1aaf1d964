// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/student/integer_matrix.h"
#include "platform/translation/student/linear.h"

#include <optional>

namespace velun {

/// How 8-bit numbers stand for real ones.
struct Quantization {
  float weights = 1;           ///< stored weight = real weight × this
  std::optional<float> input;  ///< multiplier of the input; none: from the input's largest value
};

/// A product in 8-bit integers. The input is shifted into 0 … 254, because products of unsigned
/// with signed bytes are what processors are good at; what the shift adds is taken off with the
/// bias.
class IntegerLinear final : public Linear {
 public:
  /// `bias` is empty or one an output.
  IntegerLinear(IntegerMatrix matrix, const Quantization& quantization, std::vector<float> bias);

  void apply(std::span<const float> x, int rowCount, std::span<float> y,
             ProductScratch& scratch) const override;
  std::unique_ptr<Linear> selecting(std::span<const int> outputs) const override;

 private:
  IntegerMatrix matrix_;
  Quantization quantization_;
  std::vector<float> bias_;
  std::vector<float> weightSums_;  // of each output
};

}  // namespace velun
