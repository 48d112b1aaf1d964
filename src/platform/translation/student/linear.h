// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace velun {

/// Memory that products use while they run and that the next one uses again. One a thread.
struct ProductScratch {
  std::vector<std::uint8_t> input;
  std::vector<std::int32_t> sums;
};

/// A product with a weight matrix and the addition of a bias. Const operations may run on several
/// threads, each with scratch memory of its own.
class Linear {
 public:
  virtual ~Linear() = default;

  int inputs() const { return inputs_; }
  int outputs() const { return outputs_; }

  /// y = x W + b for `rowCount` rows: x holds inputs, y outputs numbers a row.
  virtual void apply(std::span<const float> x, int rowCount, std::span<float> y,
                     ProductScratch& scratch) const = 0;

  /// The same, computing only the given outputs.
  virtual std::unique_ptr<Linear> selecting(std::span<const int> outputs) const = 0;

 protected:
  Linear(int inputs, int outputs) : inputs_(inputs), outputs_(outputs) {}

 private:
  int inputs_;
  int outputs_;
};

}  // namespace velun
