// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace velun {

/// A matrix of signed bytes that rows of unsigned bytes are multiplied with, in exact integer
/// arithmetic where the processor has instructions for it.
class IntegerMatrix {
 public:
  /// `weights` has a row of `inputs` bytes for each output and must stay alive.
  IntegerMatrix(int inputs, int outputs, std::span<const std::int8_t> weights);

  /// The same with memory of its own.
  IntegerMatrix(int inputs, int outputs, std::vector<std::int8_t> weights);

  IntegerMatrix(IntegerMatrix&&) = default;
  IntegerMatrix& operator=(IntegerMatrix&&) = default;

  int inputs() const { return inputs_; }
  int outputs() const { return outputs_; }

  /// The weights of one output.
  std::span<const std::int8_t> row(int output) const;

  /// result = x W: `rowCount` rows of inputs give rows of outputs.
  void multiply(std::span<const std::uint8_t> x, int rowCount,
                std::span<std::int32_t> result) const;

 private:
  int inputs_;
  int outputs_;
  std::vector<std::int8_t> own_;
  std::span<const std::int8_t> weights_;
};

}  // namespace velun
