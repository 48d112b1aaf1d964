// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/student/linear.h"

namespace velun {

/// A product in single precision. Published models are 8-bit; tests compare them with this one.
class FloatLinear final : public Linear {
 public:
  /// `weights` has a row of `inputs` numbers for each output; `bias` is empty or has one number
  /// for each output.
  FloatLinear(int inputs, int outputs, std::vector<float> weights, std::vector<float> bias);

  void apply(std::span<const float> x, int rowCount, std::span<float> y,
             ProductScratch& scratch) const override;
  std::unique_ptr<Linear> selecting(std::span<const int> outputs) const override;

 private:
  std::vector<float> weights_;
  std::vector<float> bias_;
};

}  // namespace velun
