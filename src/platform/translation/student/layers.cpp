// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/student/layers.h"

#include "platform/translation/student/row_math.h"

#include <algorithm>
#include <cmath>

namespace velun {

Rows product(const Linear& linear, const Rows& x, ProductScratch& scratch) {
  Rows y(x.count, linear.outputs());
  linear.apply(x.values, x.count, y.values, scratch);
  return y;
}

AddAndNormalize::AddAndNormalize(const WeightReader& weights, const std::string& prefix, int width)
    : scale_(weights.row(prefix + "_ln_scale", width)),
      bias_(weights.row(prefix + "_ln_bias", width)) {}

void AddAndNormalize::apply(Rows& x, const Rows& result) const {
  constexpr float kEpsilon = 1e-6F;
  rows::add(x.values, result.values);
  for (int index = 0; index < x.count; ++index) {
    const std::span<float> row = x.row(index);
    const auto size = static_cast<float>(row.size());
    const float mean = rows::sum(row) / size;
    for (float& value : row) value -= mean;
    const float deviation = std::sqrt(rows::dot(row, row) / size + kEpsilon);
    for (std::size_t i = 0; i < row.size(); ++i) {
      row[i] = scale_[i] * (row[i] / deviation) + bias_[i];
    }
  }
}

Attention::Attention(const WeightReader& weights, const std::string& prefix, int width, int heads)
    : heads_(heads),
      query_(weights.linear(prefix + "_Wq", prefix + "_bq", width, width)),
      key_(weights.linear(prefix + "_Wk", prefix + "_bk", width, width)),
      value_(weights.linear(prefix + "_Wv", prefix + "_bv", width, width)),
      output_(weights.linear(prefix + "_Wo", prefix + "_bo", width, width)),
      normalize_(weights, prefix + "_Wo", width) {}

AttentionMemory Attention::memory(const Rows& source, ProductScratch& scratch) const {
  return {product(*key_, source, scratch), product(*value_, source, scratch)};
}

void Attention::apply(Rows& x, const AttentionMemory& memory, ProductScratch& scratch) const {
  const Rows queries = product(*query_, x, scratch);
  const auto headWidth = static_cast<std::size_t>(x.width / heads_);
  const float scale = 1.0F / std::sqrt(static_cast<float>(headWidth));
  Rows found(x.count, x.width);
  std::vector<float> weights(static_cast<std::size_t>(memory.keys.count));
  for (int index = 0; index < x.count; ++index) {
    for (int head = 0; head < heads_; ++head) {
      const std::size_t from = static_cast<std::size_t>(head) * headWidth;
      const auto query = queries.row(index).subspan(from, headWidth);
      for (int source = 0; source < memory.keys.count; ++source) {
        weights[static_cast<std::size_t>(source)] =
            rows::dot(query, memory.keys.row(source).subspan(from, headWidth)) * scale;
      }
      rows::softmax(weights);
      const auto result = found.row(index).subspan(from, headWidth);
      for (int source = 0; source < memory.values.count; ++source) {
        rows::addScaled(result, weights[static_cast<std::size_t>(source)],
                        memory.values.row(source).subspan(from, headWidth));
      }
    }
  }
  normalize_.apply(x, product(*output_, found, scratch));
}

FeedForward::FeedForward(const WeightReader& weights, const std::string& prefix, int width,
                         int inner)
    : first_(weights.linear(prefix + "_W1", prefix + "_b1", width, inner)),
      second_(weights.linear(prefix + "_W2", prefix + "_b2", inner, width)),
      normalize_(weights, prefix + "_ffn", width) {}

void FeedForward::apply(Rows& x, ProductScratch& scratch) const {
  Rows inner = product(*first_, x, scratch);
  rows::relu(inner.values);
  normalize_.apply(x, product(*second_, inner, scratch));
}

RecurrentUnit::RecurrentUnit(const WeightReader& weights, const std::string& prefix, int width)
    : input_(weights.linear(prefix + "_W", std::string(), width, width)),
      gate_(weights.linear(prefix + "_Wf", prefix + "_bf", width, width)),
      normalize_(weights, prefix + "_ffn", width) {}

void RecurrentUnit::apply(Rows& x, std::span<float> state, ProductScratch& scratch) const {
  Rows result = product(*input_, x, scratch);
  const Rows gates = product(*gate_, x, scratch);
  for (std::size_t i = 0; i < state.size(); ++i) {
    const float keep = 1.0F / (1.0F + std::exp(-gates.values[i]));
    state[i] = keep * state[i] + (1.0F - keep) * result.values[i];
    result.values[i] = std::max(state[i], 0.0F);
  }
  normalize_.apply(x, result);
}

}  // namespace velun
