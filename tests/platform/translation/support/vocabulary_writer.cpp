// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/support/vocabulary_writer.h"

#include <cstring>
#include <span>

namespace velun::test {

namespace {

// The parts of the protocol-buffer encoding that a vocabulary needs.
enum class Wire { number = 0, bytes = 2, fixed32 = 5 };

void addNumber(std::string& message, std::uint64_t value) {
  for (; value >= 0x80; value >>= 7) message += static_cast<char>(value | 0x80);
  message += static_cast<char>(value);
}

void addKey(std::string& message, int field, Wire wire) {
  addNumber(message, static_cast<std::uint64_t>(field) << 3 | static_cast<std::uint64_t>(wire));
}

void addNumberField(std::string& message, int field, std::int64_t value) {
  addKey(message, field, Wire::number);
  addNumber(message, static_cast<std::uint64_t>(value));
}

void addBytesField(std::string& message, int field, const std::string& value) {
  addKey(message, field, Wire::bytes);
  addNumber(message, value.size());
  message += value;
}

enum class PieceKind { normal = 1, unknown = 2, control = 3 };

std::string piece(const std::string& text, float score, PieceKind kind) {
  std::string message;
  addBytesField(message, 1, text);
  addKey(message, 2, Wire::fixed32);
  char raw[sizeof score];
  std::memcpy(raw, &score, sizeof score);
  message.append(raw, sizeof score);
  addNumberField(message, 3, static_cast<int>(kind));
  return message;
}

std::string replacements(const std::string& table) {
  std::string message;
  addBytesField(message, 1, table.empty() ? "identity" : "custom");
  if (!table.empty()) addBytesField(message, 2, table);
  return message;
}

/// Normalization that does not change spaces.
std::string replacementsAfter(const std::string& table) {
  std::string message = replacements(table);
  for (const int spaces : {3, 4, 5}) addNumberField(message, spaces, 0);
  return message;
}

}  // namespace

std::vector<std::byte> writeVocabulary(const std::vector<std::string>& words,
                                       const ReplacementTables& tables) {
  constexpr int kPieces = 1;
  std::string model;
  addBytesField(model, kPieces, piece("</s>", 0, PieceKind::control));
  addBytesField(model, kPieces, piece("<unk>", 0, PieceKind::unknown));
  float score = -1;
  for (const std::string& word : words) {
    addBytesField(model, kPieces, piece("\u2581" + word, score, PieceKind::normal));
    score -= 1e-4F;
  }
  std::string training;
  addNumberField(training, 3, 1);  // a unigram model
  addNumberField(training, 4, static_cast<std::int64_t>(words.size()) + kSpecialTokens);
  addNumberField(training, 40, 1);   // unknown
  addNumberField(training, 41, -1);  // no start
  addNumberField(training, 42, 0);   // end
  addNumberField(training, 43, -1);  // no padding
  addBytesField(model, 2, training);
  addBytesField(model, 3, replacements(tables.before));
  if (!tables.after.empty()) addBytesField(model, 5, replacementsAfter(tables.after));
  const auto* raw = reinterpret_cast<const std::byte*>(model.data());
  return {raw, raw + model.size()};
}

std::string writeReplacementTable(const std::vector<std::uint32_t>& units, std::string_view texts) {
  const auto tree = std::as_bytes(std::span(units));
  const auto size = static_cast<std::uint32_t>(tree.size());
  std::string table(sizeof size, '\0');
  std::memcpy(table.data(), &size, sizeof size);
  table.append(reinterpret_cast<const char*>(tree.data()), tree.size());
  return table.append(texts);
}

}  // namespace velun::test
