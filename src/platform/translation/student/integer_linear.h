// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/student/integer_matrix.h"
#include "platform/translation/student/linear.h"

#include <optional>

namespace velun {

/// The scales between 8-bit and real numbers.
struct Quantization {
  float weights = 1;           ///< stored weight = real weight × this
  std::optional<float> input;  ///< multiplier of the input; none: from its maximum at each call
};

/// A product in 8-bit integers. The input is shifted into 0 … 254 because processors are fastest at
/// products of unsigned with signed bytes. The bias compensates for the shift.
class IntegerLinear final : public Linear {
 public:
  /// `bias` is empty or has one number for each output.
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
