// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/student/shortlist.h"

#include "platform/translation/student/byte_reader.h"

#include <algorithm>
#include <cstring>

namespace velun {

namespace {

constexpr std::uint64_t kMagic = 0xF11A48D5013417F5ULL;
constexpr int kCountStep = 8;

}  // namespace

Shortlist::Shortlist(std::span<const std::byte> bytes, int sourceVocabulary, int targetVocabulary)
    : targetVocabulary_(targetVocabulary) {
  ByteReader reader(bytes);
  if (reader.value<std::uint64_t>() != kMagic) {
    throw ModelFormatError::unsupported("not a binary shortlist");
  }
  reader.value<std::uint64_t>();  // a checksum that is computed differently on each platform
  const auto first = reader.value<std::uint64_t>();
  reader.value<std::uint64_t>();  // length of the longest list, not needed
  const auto offsetCount = reader.value<std::uint64_t>();
  const auto tokenCount = reader.value<std::uint64_t>();
  if (offsetCount != static_cast<std::uint64_t>(sourceVocabulary) + 1) {
    throw ModelFormatError::damaged("a shortlist for another source vocabulary");
  }
  alwaysAllowed_ = static_cast<int>(
      std::min<std::uint64_t>(first, static_cast<std::uint64_t>(targetVocabulary)));

  const auto offsetBytes = reader.take(offsetCount * sizeof(std::uint64_t));
  if (tokenCount != reader.remaining() / sizeof(std::uint32_t) ||
      reader.remaining() % sizeof(std::uint32_t) != 0) {
    throw ModelFormatError::damaged("a shortlist of another length than its header says");
  }
  const auto tokenBytes = reader.take(reader.remaining());
  offsets_.resize(static_cast<std::size_t>(offsetCount));
  tokens_.resize(static_cast<std::size_t>(tokenCount));
  std::memcpy(offsets_.data(), offsetBytes.data(), offsetBytes.size());
  if (!tokens_.empty()) std::memcpy(tokens_.data(), tokenBytes.data(), tokenBytes.size());

  if (!std::ranges::is_sorted(offsets_) || offsets_.back() > tokenCount) {
    throw ModelFormatError::damaged("a shortlist whose lists overlap");
  }
  const auto isOutOfRange = [this](std::uint32_t token) {
    return token >= static_cast<std::uint32_t>(targetVocabulary_);
  };
  if (std::ranges::any_of(tokens_, isOutOfRange)) {
    throw ModelFormatError::damaged("a shortlist for another target vocabulary");
  }
}

std::vector<int> Shortlist::candidates(std::span<const int> source, bool oneVocabulary) const {
  std::vector<bool> allowed(static_cast<std::size_t>(targetVocabulary_), false);
  std::fill_n(allowed.begin(), alwaysAllowed_, true);
  for (const int token : source) {
    const auto from = static_cast<std::size_t>(token);
    if (oneVocabulary) allowed[from] = true;
    for (std::uint64_t i = offsets_[from]; i < offsets_[from + 1]; ++i) allowed[tokens_[i]] = true;
  }
  auto count = static_cast<int>(std::ranges::count(allowed, true));
  for (int token = alwaysAllowed_; token < targetVocabulary_ && count % kCountStep != 0; ++token) {
    if (allowed[static_cast<std::size_t>(token)]) continue;
    allowed[static_cast<std::size_t>(token)] = true;
    ++count;
  }
  std::vector<int> result;
  result.reserve(static_cast<std::size_t>(count));
  for (int token = 0; token < targetVocabulary_; ++token) {
    if (allowed[static_cast<std::size_t>(token)]) result.push_back(token);
  }
  return result;
}

}  // namespace velun
