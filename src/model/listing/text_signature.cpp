// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/listing/text_signature.h"

namespace velun {

TextSignature::TextSignature(QStringView text) {
  constexpr std::uint64_t kTripleMask = (std::uint64_t{1} << 48) - 1;
  constexpr std::uint64_t kPairMask = (std::uint64_t{1} << 32) - 1;
  constexpr std::uint64_t kLetterMask = (std::uint64_t{1} << 16) - 1;
  std::uint64_t last = 0;
  for (qsizetype i = 0; i < text.size(); ++i) {
    last = ((last << 16) | text[i].unicode()) & kTripleMask;
    // The number of letters is part of each, so that a pair is no triple.
    add((last & kLetterMask) | (std::uint64_t{1} << 48));
    if (i >= 1) add((last & kPairMask) | (std::uint64_t{2} << 48));
    if (i >= 2) add(last | (std::uint64_t{3} << 48));
  }
}

void TextSignature::add(std::uint64_t letters) {
  // Fibonacci hashing: the upper bits of the product depend on all letters.
  constexpr std::uint64_t kGoldenRatio = 0x9E37'79B9'7F4A'7C15;
  constexpr int kHashBits = 14;
  static_assert(kBits == std::size_t{1} << kHashBits);
  const std::uint64_t bit = (letters * kGoldenRatio) >> (kWordBits - kHashBits);
  words_[bit / kWordBits] |= std::uint64_t{1} << (bit % kWordBits);
}

bool TextSignature::mayHold(const TextSignature& part) const {
  for (std::size_t i = 0; i < words_.size(); ++i) {
    if ((part.words_[i] & ~words_[i]) != 0) return false;
  }
  return true;
}

QByteArrayView TextSignature::bytes() const {
  return {reinterpret_cast<const char*>(words_.data()), qsizetype{sizeof words_}};
}

}  // namespace velun
