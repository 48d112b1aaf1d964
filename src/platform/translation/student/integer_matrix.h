// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace velun {

/// A matrix of signed bytes, to be multiplied with rows of unsigned bytes. Exact on processors that
/// have instructions for it.
class IntegerMatrix {
 public:
  /// `weights` has a row of `inputs` bytes for each output and must outlive the matrix.
  IntegerMatrix(int inputs, int outputs, std::span<const std::int8_t> weights);

  /// The same, but owns the weights.
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
