// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/support/made_up_model.h"

#include "platform/translation/support/model_writer.h"
#include "platform/translation/support/vocabulary_writer.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <set>

namespace velun::test {

namespace {

using Bytes = std::vector<std::byte>;

template <class T>
void append(Bytes& bytes, T value) {
  const auto* raw = reinterpret_cast<const std::byte*>(&value);
  bytes.insert(bytes.end(), raw, raw + sizeof value);
}

/// Collects named arrays of random numbers.
class RandomItems {
 public:
  // Uniformly distributed weights, as at the start of training.
  void matrix(const std::string& name, int rows, int columns) {
    const float limit = std::sqrt(6.0F / static_cast<float>(rows + columns));
    integers(name, rows, columns, 127.0F / limit,
             [this] { return std::uniform_int_distribution<int>(-127, 127)(random_); });
  }

  void table(const std::string& name, int rows, int columns) {
    constexpr float kMaxDeviations = 4.0F;
    const float multiplier = 127.0F / kMaxDeviations * std::sqrt(static_cast<float>(columns));
    integers(name, rows, columns, multiplier, [this] {
      const float value = normal_(random_) * 127.0F / kMaxDeviations;
      return static_cast<int>(std::clamp(value, -127.0F, 127.0F));
    });
  }

  void row(const std::string& name, int size, float mean, float deviation) {
    WrittenItem& item = items_.emplace_back();
    item.name = name;
    item.shape = {1, size};
    for (int i = 0; i < size; ++i) append(item.data, mean + deviation * normal_(random_));
  }

  void norm(const std::string& prefix, int size) {
    row(prefix + "_ln_scale", size, 1, 0.1F);
    row(prefix + "_ln_bias", size, 0, 0.05F);
  }

  void text(const std::string& name, const std::string& content) {
    WrittenItem& item = items_.emplace_back();
    item.name = name;
    item.type = ModelItem::Type::characters;
    item.shape = {static_cast<int>(content.size()) + 1};
    const auto* raw = reinterpret_cast<const std::byte*>(content.c_str());
    item.data.assign(raw, raw + content.size() + 1);
  }

  std::vector<WrittenItem>& items() { return items_; }

 private:
  template <class Draw>
  void integers(const std::string& name, int rows, int columns, float multiplier, Draw draw) {
    WrittenItem& item = items_.emplace_back();
    item.name = name;
    item.type = ModelItem::Type::int8;
    item.shape = {rows, columns};
    const std::size_t count = static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns);
    item.data.reserve(count + sizeof multiplier);
    for (std::size_t i = 0; i < count; ++i) item.data.push_back(static_cast<std::byte>(draw()));
    append(item.data, multiplier);
    // A typical maximum of the activations.
    constexpr float kInput = 127.0F / 5.0F;
    row(name + "_QuantMultA", 1, kInput, 0);
  }

  std::mt19937 random_{5};
  std::normal_distribution<float> normal_{0, 1};
  std::vector<WrittenItem> items_;
};

void addAttention(RandomItems& items, const std::string& prefix, int width) {
  for (const char* part : {"q", "k", "v", "o"}) {
    items.matrix(prefix + "_W" + part, width, width);
    items.row(prefix + "_b" + part, width, 0, 0.05F);
  }
  items.norm(prefix + "_Wo", width);
}

void addFeedForward(RandomItems& items, const std::string& prefix, int width, int inner) {
  items.matrix(prefix + "_W1", width, inner);
  items.row(prefix + "_b1", inner, 0, 0.05F);
  items.matrix(prefix + "_W2", inner, width);
  items.row(prefix + "_b2", width, 0, 0.05F);
  items.norm(prefix + "_ffn", width);
}

// Every key that the reference engine requires, including those of unused parts.
std::string configuration(const MadeUpModel& model) {
  const auto number = [](int value) {
    return std::to_string(value);
  };
  return "bert-train-type-embeddings: true\nbert-type-vocab-size: 2\ndec-cell: ssru\n"
         "dec-cell-base-depth: 2\ndec-cell-high-depth: 1\ndec-depth: " +
         number(model.sizes.decoderLayers) + "\ndim-emb: " + number(model.sizes.width) +
         "\ndim-rnn: 1024\ndim-vocabs:\n  - " + number(model.vocabulary) + "\n  - " +
         number(model.vocabulary) +
         "\nenc-cell: gru\nenc-cell-depth: 1\nenc-depth: " + number(model.sizes.encoderLayers) +
         "\nenc-type: bidirectional\nfactors-combine: sum\nfactors-dim-emb: 0\ninput-types:\n  []\n"
         "layer-normalization: false\nlemma-dependency: \"\"\nlemma-dim-emb: 0\n"
         "output-omit-bias: false\nright-left: false\nskip: false\ntied-embeddings: false\n"
         "tied-embeddings-all: true\ntied-embeddings-src: false\n"
         "transformer-aan-activation: swish\ntransformer-aan-depth: 2\n"
         "transformer-aan-nogate: false\ntransformer-decoder-autoreg: rnn\n"
         "transformer-decoder-dim-ffn: 0\ntransformer-decoder-ffn-depth: 0\n"
         "transformer-dim-aan: 2048\ntransformer-dim-ffn: " +
         number(model.sizes.feedForward) +
         "\ntransformer-ffn-activation: relu\ntransformer-ffn-depth: 2\n"
         "transformer-guided-alignment-layer: last\ntransformer-heads: " +
         number(model.sizes.heads) +
         "\ntransformer-no-projection: false\ntransformer-pool: false\n"
         "transformer-postprocess: dan\ntransformer-postprocess-emb: d\n"
         "transformer-postprocess-top: \"\"\ntransformer-preprocess: \"\"\n"
         "transformer-rnn-projection: false\ntransformer-tied-layers:\n  []\n"
         "transformer-train-position-embeddings: false\ntype: transformer\nulr: false\n"
         "ulr-dim-emb: 0\nulr-trainable-transformation: false\nversion: v1.12.14 made up\n";
}

Bytes modelBytes(const MadeUpModel& model) {
  const StudentConfig& sizes = model.sizes;
  RandomItems items;
  items.table("Wemb", model.vocabulary, sizes.width);
  for (int layer = 1; layer <= sizes.encoderLayers; ++layer) {
    const std::string prefix = "encoder_l" + std::to_string(layer);
    addAttention(items, prefix + "_self", sizes.width);
    addFeedForward(items, prefix + "_ffn", sizes.width, sizes.feedForward);
  }
  for (int layer = 1; layer <= sizes.decoderLayers; ++layer) {
    const std::string prefix = "decoder_l" + std::to_string(layer);
    items.matrix(prefix + "_rnn_W", sizes.width, sizes.width);
    items.matrix(prefix + "_rnn_Wf", sizes.width, sizes.width);
    items.row(prefix + "_rnn_bf", sizes.width, 0, 0.05F);
    items.norm(prefix + "_rnn_ffn", sizes.width);
    addAttention(items, prefix + "_context", sizes.width);
    addFeedForward(items, prefix + "_ffn", sizes.width, sizes.feedForward);
  }
  items.row("decoder_ff_logit_out_b", model.vocabulary, 0, 0.05F);
  constexpr float kNever = -100;
  std::memcpy(items.items().back().data.data(), &kNever, sizeof kNever);
  std::ranges::sort(items.items(), {}, &WrittenItem::name);
  items.text("special:model.yml", configuration(model));
  return writeModel(items.items());
}

Bytes shortlistBytes(const MadeUpModel& model) {
  const auto length = static_cast<std::uint64_t>(model.shortlistLength);
  const auto vocabulary = static_cast<std::uint64_t>(model.vocabulary);
  Bytes bytes;
  append<std::uint64_t>(bytes, 0xF11A48D5013417F5ULL);
  append<std::uint64_t>(bytes, 0);
  append<std::uint64_t>(bytes, length);
  append<std::uint64_t>(bytes, length);
  append<std::uint64_t>(bytes, vocabulary + 1);
  append<std::uint64_t>(bytes, vocabulary * length);
  for (std::uint64_t i = 0; i <= vocabulary; ++i) append<std::uint64_t>(bytes, i * length);
  std::mt19937 random(7);
  std::uniform_int_distribution<std::uint32_t> anyToken(
      0, static_cast<std::uint32_t>(model.vocabulary) - 1);
  for (std::uint64_t i = 0; i < vocabulary; ++i) {
    std::set<std::uint32_t> tokens;
    while (tokens.size() < length) tokens.insert(anyToken(random));
    for (const std::uint32_t token : tokens) append(bytes, token);
  }
  return bytes;
}

// Words of two to four syllables, all different.
std::vector<std::string> words(int count) {
  constexpr std::string_view kConsonants = "bcdfghjklmnprstvz";
  constexpr std::string_view kVowels = "aeiou";
  std::mt19937 random(2);
  std::set<std::string> found;
  while (found.size() < static_cast<std::size_t>(count)) {
    std::string word;
    const int syllables = std::uniform_int_distribution<int>(2, 4)(random);
    for (int i = 0; i < syllables; ++i) {
      word += kConsonants[random() % kConsonants.size()];
      word += kVowels[random() % kVowels.size()];
    }
    found.insert(word);
  }
  return {found.begin(), found.end()};
}

}  // namespace

MadeUpModel MadeUpModel::base() {
  MadeUpModel model;
  model.sizes = {.width = 512,
                 .feedForward = 2048,
                 .heads = 8,
                 .encoderLayers = 6,
                 .decoderLayers = 2,
                 .oneVocabulary = true};
  model.vocabulary = 32000;
  return model;
}

void MadeUpModel::write(const QString& folder) const {
  const StudentFiles files = MadeUpModel::files(folder);
  writeBytes(files.model, modelBytes(*this));
  writeBytes(files.sourceVocabulary, writeVocabulary(words(vocabulary - kSpecialTokens)));
  writeBytes(files.shortlist, shortlistBytes(*this));
}

StudentFiles MadeUpModel::files(const QString& folder) {
  return {folder + QStringLiteral("/model.bin"), folder + QStringLiteral("/vocab.spm"), QString(),
          folder + QStringLiteral("/lex.bin")};
}

QStringList MadeUpModel::sentences(int count, int tokens) const {
  const std::vector<std::string> all = words(vocabulary - kSpecialTokens);
  std::mt19937 random(11);
  QStringList sentences;
  for (int i = 0; i < count; ++i) {
    QStringList sentence;
    for (int token = 1; token < tokens; ++token) {
      sentence += QString::fromStdString(all[random() % all.size()]);
    }
    sentences += sentence.join(u' ');
  }
  return sentences;
}

}  // namespace velun::test
