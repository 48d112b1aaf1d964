// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/recognizer_message.h"

#include <cstring>
#include <stdexcept>

namespace velun {

namespace {

constexpr int kHeadBytes = 5;

}  // namespace

QByteArray encoded(RecognizerMessage::Kind kind, const QByteArray& body) {
  const auto length = static_cast<std::uint32_t>(body.size());
  QByteArray bytes(kHeadBytes, Qt::Uninitialized);
  std::memcpy(bytes.data(), &length, sizeof length);
  bytes[4] = static_cast<char>(kind);
  return bytes + body;
}

void RecognizerMessageReader::append(std::span<const char> bytes) {
  bytes_.append(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

std::optional<RecognizerMessage> RecognizerMessageReader::next() {
  if (bytes_.size() < kHeadBytes) return std::nullopt;
  std::uint32_t length = 0;
  std::memcpy(&length, bytes_.constData(), sizeof length);
  if (length > kMaxRecognizerMessage) throw std::runtime_error("a message is damaged");
  const qsizetype end = kHeadBytes + static_cast<qsizetype>(length);
  if (bytes_.size() < end) return std::nullopt;
  const auto kind = static_cast<RecognizerMessage::Kind>(static_cast<std::uint8_t>(bytes_[4]));
  RecognizerMessage message{kind, bytes_.mid(kHeadBytes, static_cast<qsizetype>(length))};
  bytes_.remove(0, end);
  return message;
}

}  // namespace velun
