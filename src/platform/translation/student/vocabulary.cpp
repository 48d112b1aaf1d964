// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/student/vocabulary.h"

#include "platform/translation/student/model_format_error.h"
#include "platform/translation/student/replacement_tables.h"

#include <algorithm>
#include <exception>
#include <QByteArray>
#include <sentencepiece_processor.h>
#include <string>
#include <string_view>

namespace velun {

namespace {

/// SentencePiece reports most damage as a status but throws for some.
bool isLoaded(sentencepiece::SentencePieceProcessor& processor, std::string_view bytes) {
  try {
    return processor.LoadFromSerializedProto(bytes).ok();
  } catch (const std::exception&) {
    return false;
  }
}

}  // namespace

Vocabulary::Vocabulary(std::span<const std::byte> bytes)
    : processor_(std::make_unique<sentencepiece::SentencePieceProcessor>()) {
  checkReplacementTables(bytes);
  const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  if (!isLoaded(*processor_, text))
    throw ModelFormatError::damaged("the vocabulary cannot be read");
  if (endToken() < 0) throw ModelFormatError::unsupported("a vocabulary without an end token");
}

Vocabulary::~Vocabulary() = default;
Vocabulary::Vocabulary(Vocabulary&&) noexcept = default;
Vocabulary& Vocabulary::operator=(Vocabulary&&) noexcept = default;

int Vocabulary::size() const {
  return processor_->GetPieceSize();
}

int Vocabulary::endToken() const {
  return processor_->eos_id();
}

int Vocabulary::unknownToken() const {
  return processor_->unk_id();
}

std::vector<int> Vocabulary::encode(const QString& text) const {
  const QByteArray utf8 = text.toUtf8();
  std::vector<int> tokens;
  const auto status = processor_->Encode(
      std::string_view(utf8.constData(), static_cast<std::size_t>(utf8.size())), &tokens);
  return status.ok() ? tokens : std::vector<int>();
}

QString Vocabulary::decode(std::span<const int> tokens) const {
  std::vector<int> known;
  std::ranges::copy_if(tokens, std::back_inserter(known), [this](int token) {
    return token >= 0 && token < size() && token != endToken();
  });
  std::string text;
  const auto status = processor_->Decode(known, &text);
  return status.ok() ? QString::fromStdString(text) : QString();
}

}  // namespace velun
