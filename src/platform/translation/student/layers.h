// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/student/linear.h"
#include "platform/translation/student/weight_reader.h"

#include <memory>
#include <span>
#include <string>
#include <vector>

namespace velun {

/// Rows of floats, `width` in each.
struct Rows {
  Rows() = default;
  Rows(int rowCount, int rowWidth)
      : count(rowCount),
        width(rowWidth),
        values(static_cast<std::size_t>(rowCount) * static_cast<std::size_t>(rowWidth)) {}

  std::span<float> row(int index) {
    return std::span(values).subspan(
        static_cast<std::size_t>(index) * static_cast<std::size_t>(width),
        static_cast<std::size_t>(width));
  }
  std::span<const float> row(int index) const {
    return std::span(values).subspan(
        static_cast<std::size_t>(index) * static_cast<std::size_t>(width),
        static_cast<std::size_t>(width));
  }

  int count = 0;
  int width = 0;
  std::vector<float> values;
};

/// x W + b for every row.
Rows product(const Linear& linear, const Rows& x, ProductScratch& scratch);

/// Adds the result of a part to its input and normalizes every row to a mean of 0 and a variance of
/// 1; then applies the learned scale and bias.
class AddAndNormalize {
 public:
  AddAndNormalize(const WeightReader& weights, const std::string& prefix, int width);
  void apply(Rows& x, const Rows& result) const;

 private:
  std::vector<float> scale_;
  std::vector<float> bias_;
};

/// The keys and values that attention reads, for every position of the source.
struct AttentionMemory {
  Rows keys;
  Rows values;
};

/// Multi-head attention.
class Attention {
 public:
  Attention(const WeightReader& weights, const std::string& prefix, int width, int heads);

  AttentionMemory memory(const Rows& source, ProductScratch& scratch) const;

  /// Adds to every row of `x` the values of `memory`, weighted by attention, and normalizes it.
  void apply(Rows& x, const AttentionMemory& memory, ProductScratch& scratch) const;

 private:
  int heads_;
  std::unique_ptr<Linear> query_, key_, value_, output_;
  AddAndNormalize normalize_;
};

/// Two products with a ReLU between them.
class FeedForward {
 public:
  FeedForward(const WeightReader& weights, const std::string& prefix, int width, int inner);
  void apply(Rows& x, ProductScratch& scratch) const;

 private:
  std::unique_ptr<Linear> first_, second_;
  AddAndNormalize normalize_;
};

/// The simpler simple recurrent unit (SSRU): a gate mixes its state with each new input.
class RecurrentUnit {
 public:
  RecurrentUnit(const WeightReader& weights, const std::string& prefix, int width);

  /// One step. `x` is one row; `state` has the same length and starts with zeros.
  void apply(Rows& x, std::span<float> state, ProductScratch& scratch) const;

 private:
  std::unique_ptr<Linear> input_, gate_;
  AddAndNormalize normalize_;
};

}  // namespace velun
