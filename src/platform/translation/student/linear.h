// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace velun {

/// Temporary memory of products, kept to be used again. One for each thread.
struct ProductScratch {
  std::vector<std::uint8_t> input;
  std::vector<std::int32_t> sums;
};

/// A product with a weight matrix plus a bias. Const operations may run on several threads, each
/// with its own scratch memory.
class Linear {
 public:
  virtual ~Linear() = default;

  int inputs() const { return inputs_; }
  int outputs() const { return outputs_; }

  /// y = x W + b for `rowCount` rows. A row of x has inputs() numbers, a row of y outputs().
  virtual void apply(std::span<const float> x, int rowCount, std::span<float> y,
                     ProductScratch& scratch) const = 0;

  /// A copy that computes only the given outputs.
  virtual std::unique_ptr<Linear> selecting(std::span<const int> outputs) const = 0;

 protected:
  Linear(int inputs, int outputs) : inputs_(inputs), outputs_(outputs) {}

 private:
  int inputs_;
  int outputs_;
};

}  // namespace velun
