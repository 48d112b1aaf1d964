// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <memory>
#include <QString>
#include <span>
#include <vector>

namespace sentencepiece {
class SentencePieceProcessor;
}

namespace velun {

/// Encodes text as the tokens of a model and decodes them. Const operations may run on any thread.
class Vocabulary {
 public:
  /// Throws `ModelFormatError`.
  explicit Vocabulary(std::span<const std::byte> bytes);
  ~Vocabulary();
  Vocabulary(Vocabulary&&) noexcept;
  Vocabulary& operator=(Vocabulary&&) noexcept;

  int size() const;
  int endToken() const;
  int unknownToken() const;

  /// The tokens of a text, without the end token; empty for blank text.
  std::vector<int> encode(const QString& text) const;

  /// The text of tokens. Unknown ones are skipped.
  QString decode(std::span<const int> tokens) const;

 private:
  std::unique_ptr<sentencepiece::SentencePieceProcessor> processor_;
};

}  // namespace velun
