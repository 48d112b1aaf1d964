// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <QByteArray>
#include <span>

namespace velun {

/// One message between the program and its helper. On the wire: the body's length (32 bits, of this
/// machine's order), the kind (8 bits), the body.
struct RecognizerMessage {
  enum class Kind : std::uint8_t {
    // To the helper:
    configure = 1,  ///< `RecognizerSettings` as JSON; the first message; answered by `ready`
    audio,          ///< 32-bit float samples, 16 kHz mono; answered by `heard`
    finalize,       ///< answered by `settled`
    restore,        ///< words without punctuation, UTF-8; answered by `restored`
    // From the helper:
    ready = 65,
    draft,     ///< the phrase so far, UTF-8
    final,     ///< the phrase as it stays; empty when its draft is to be forgotten
    heard,     ///< after the results of one `audio`; one byte, 1 while a phrase is under way
    settled,   ///< after the results of one `finalize`
    restored,  ///< the same words with case and punctuation
    failure,   ///< why it ends, UTF-8, for the curious
  };

  Kind kind;
  QByteArray body;
};

/// The longest body that is believed.
constexpr std::size_t kLargestRecognizerMessage = 16 << 20;

/// What is sent for a message.
QByteArray packed(RecognizerMessage::Kind kind, const QByteArray& body = {});

/// Puts messages together from what arrives in pieces.
class RecognizerMessageReader {
 public:
  void append(std::span<const char> bytes);

  /// The next complete message. Throws `std::runtime_error` when what arrived is none.
  std::optional<RecognizerMessage> next();

 private:
  QByteArray bytes_;
};

}  // namespace velun
