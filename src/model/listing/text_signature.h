// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <QByteArrayView>
#include <QStringView>

namespace velun {

/// Which letters, pairs and triples of letters a text holds, as bits of their hashes (a Bloom
/// filter). It rules out most texts that do not hold a searched one without reading them.
class TextSignature {
 public:
  TextSignature() = default;
  explicit TextSignature(QStringView text);

  /// False: a text of this signature cannot hold the text of the other one.
  bool mayHold(const TextSignature& part) const;

  bool operator==(const TextSignature&) const = default;

  /// The bits, in the byte order of the machine.
  QByteArrayView bytes() const;
  /// Sets the bits: calls `source(place, size)`, which writes that many bytes, and returns its
  /// result.
  template <class Source>
  auto read(Source source) {
    return source(reinterpret_cast<char*>(words_.data()), qsizetype{sizeof words_});
  }

 private:
  /// The text of 200 lines has about 2,500 different triples.
  static constexpr std::size_t kBits = 16'384;
  static constexpr std::size_t kWordBits = 64;

  void add(std::uint64_t letters);

  std::array<std::uint64_t, kBits / kWordBits> words_{};
};

}  // namespace velun
