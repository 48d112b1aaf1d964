// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <QByteArray>
#include <span>

namespace velun {

/// One message between the program and its helper. Encoded as the body's length (32 bits in native
/// byte order), the kind (8 bits) and the body.
struct RecognizerMessage {
  enum class Kind : std::uint8_t {
    // To the helper:
    configure = 1,  ///< `RecognizerSettings` as JSON; the first message; the reply is `ready`
    audio,          ///< 32-bit float samples, 16 kHz mono; the reply is `heard`
    finalize,       ///< the reply is `settled`
    restore,        ///< words without punctuation, UTF-8; the reply is `restored`
    skip,           ///< audio was left out: ends the phrase; there is no reply
    speech,         ///< 32-bit float samples of one voice, 16 kHz mono; the reply is `voice`
    // From the helper:
    ready = 65,
    draft,       ///< the phrase so far (result_codec.h)
    final,       ///< the finished phrase; without text to discard its draft
    heard,       ///< after the results of one `audio`; one byte, 1 while a phrase is under way,
                 ///< and the microseconds that decoding took (32 bits in native byte order)
    settled,     ///< after the results of one `finalize`
    restored,    ///< the same words with case and punctuation
    failure,     ///< the reason why the helper ends, UTF-8
    damaged,     ///< the helper ends because this file is missing or damaged, UTF-8
    unreadable,  ///< the helper ends because this file cannot be read: errno, a blank, its name
    voice,       ///< the print of that voice, 32-bit floats; empty if it cannot be described
  };

  Kind kind;
  QByteArray body;
};

/// Maximum accepted body size, in bytes.
constexpr std::size_t kMaxRecognizerMessage = 16 << 20;

/// Encodes a message.
QByteArray encoded(RecognizerMessage::Kind kind, const QByteArray& body = {});

/// Decodes messages from a stream of bytes.
class RecognizerMessageReader {
 public:
  void append(std::span<const char> bytes);

  /// The next complete message, if there is one. Throws `std::runtime_error` for invalid bytes.
  std::optional<RecognizerMessage> next();

 private:
  QByteArray bytes_;
};

}  // namespace velun
