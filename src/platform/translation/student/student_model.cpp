// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/student/student_model.h"

#include "platform/foundation/failure.h"
#include "platform/translation/student/row_math.h"

#include <cmath>
#include <string>

namespace velun {

namespace {

std::string sourceTableName(const StudentConfig& config) {
  return config.oneVocabulary ? "Wemb" : "encoder_Wemb";
}

std::string targetTableName(const StudentConfig& config) {
  return config.oneVocabulary ? "Wemb" : "decoder_Wemb";
}

void throwIfStopped(const std::stop_token& stop) {
  if (stop.stop_requested()) throw Cancelled();
}

// The index of the highest score that is not of the unknown token.
std::size_t indexOfBest(std::span<const float> scores,
                        const std::optional<std::vector<int>>& tokens, int unknown) {
  std::optional<std::size_t> best;
  for (std::size_t i = 0; i < scores.size(); ++i) {
    const int token = tokens ? (*tokens)[i] : static_cast<int>(i);
    if (token != unknown && (!best || scores[i] > scores[*best])) best = i;
  }
  return best.value_or(0);
}

}  // namespace

/// The state of decoding between two output tokens.
struct StudentModel::DecoderState {
  std::vector<AttentionMemory> memories;      // one for each layer
  std::vector<std::vector<float>> recurrent;  // one for each layer
  int position = 0;
};

StudentModel::StudentModel(StudentModelFile file)
    : file_(std::move(file)),
      config_(parseStudentConfig(file_.configuration())),
      sourceTable_(file_.at(sourceTableName(config_)), config_.width),
      targetTable_(file_.at(targetTableName(config_)), config_.width) {
  const WeightReader weights(file_);
  const int width = config_.width;
  for (int layer = 1; layer <= config_.encoderLayers; ++layer) {
    const std::string prefix = "encoder_l" + std::to_string(layer);
    encoder_.push_back({Attention(weights, prefix + "_self", width, config_.heads),
                        FeedForward(weights, prefix + "_ffn", width, config_.feedForward)});
  }
  for (int layer = 1; layer <= config_.decoderLayers; ++layer) {
    const std::string prefix = "decoder_l" + std::to_string(layer);
    decoder_.push_back({RecurrentUnit(weights, prefix + "_rnn", width),
                        Attention(weights, prefix + "_context", width, config_.heads),
                        FeedForward(weights, prefix + "_ffn", width, config_.feedForward)});
  }
  output_ = weights.outputLayer(targetTableName(config_), "decoder_ff_logit_out_b", width);
}

Rows StudentModel::encode(std::span<const int> source, const std::stop_token& stop) const {
  Rows x(static_cast<int>(source.size()), config_.width);
  const float scale = std::sqrt(static_cast<float>(config_.width));
  for (int position = 0; position < x.count; ++position) {
    sourceTable_.read(source[static_cast<std::size_t>(position)], scale, x.row(position));
    rows::addPosition(x.row(position), position);
  }
  for (const EncoderLayer& layer : encoder_) {
    throwIfStopped(stop);
    layer.attention.apply(x, layer.attention.memory(x, scratch_), scratch_);
    layer.feedForward.apply(x, scratch_);
  }
  return x;
}

Rows StudentModel::decodeStep(std::optional<int> previous, DecoderState& state) const {
  Rows y(1, config_.width);
  // The first step has no previous token; its input is zero, not the vector of any token.
  if (previous) {
    targetTable_.read(*previous, std::sqrt(static_cast<float>(config_.width)), y.row(0));
  }
  rows::addPosition(y.row(0), state.position++);
  for (std::size_t i = 0; i < decoder_.size(); ++i) {
    decoder_[i].recurrent.apply(y, state.recurrent[i], scratch_);
    decoder_[i].attention.apply(y, state.memories[i], scratch_);
    decoder_[i].feedForward.apply(y, scratch_);
  }
  return y;
}

std::vector<int> StudentModel::translate(std::span<const int> source, const Decoding& decoding,
                                         std::stop_token stop) const {
  const Rows encoded = encode(source, stop);
  DecoderState state;
  for (const DecoderLayer& layer : decoder_) {
    state.memories.push_back(layer.attention.memory(encoded, scratch_));
    state.recurrent.emplace_back(static_cast<std::size_t>(config_.width), 0.0F);
  }
  const auto& candidates = decoding.candidates;
  const std::unique_ptr<Linear> selected = candidates ? output_->selecting(*candidates) : nullptr;
  const Linear& output = selected ? *selected : *output_;

  std::vector<int> result;
  std::optional<int> previous;
  while (previous != decoding.endToken && std::ssize(result) < decoding.maxTokens) {
    throwIfStopped(stop);
    const Rows y = decodeStep(previous, state);
    const Rows scores = product(output, y, scratch_);
    const std::size_t best = indexOfBest(scores.values, candidates, decoding.unknownToken);
    previous = candidates ? (*candidates)[best] : static_cast<int>(best);
    result.push_back(*previous);
  }
  return result;
}

}  // namespace velun
