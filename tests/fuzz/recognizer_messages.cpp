// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/caption_text.h"
#include "platform/speech/helper/recognizer_message.h"
#include "platform/speech/helper/recognizer_settings.h"
#include "platform/speech/helper/result_codec.h"
#include "require.h"

#include <stdexcept>
#include <vector>

using namespace velun;
using fuzz::require;

namespace {

struct Reading {
  std::vector<RecognizerMessage> messages;
  bool isDamaged = false;
};

/// Reads the bytes as if they arrived in pieces of one size.
Reading read(std::span<const char> bytes, std::size_t piece) {
  Reading reading;
  RecognizerMessageReader reader;
  try {
    for (std::size_t at = 0; at < bytes.size(); at += piece) {
      reader.append(bytes.subspan(at, std::min(piece, bytes.size() - at)));
      while (auto message = reader.next()) reading.messages.push_back(*std::move(message));
    }
  } catch (const std::runtime_error&) {
    reading.isDamaged = true;
  }
  return reading;
}

void checkSettings(const QByteArray& json) {
  const RecognizerSettings settings = RecognizerSettings::fromJson(json);
  require(RecognizerSettings::fromJson(settings.toJson()) == settings,
          "settings are sent as they are");
}

void checkResult(const QByteArray& json) {
  const TranscriptionResult result = decodedResult(json, true);
  require(decodedResult(encodedResult(result), true) == result, "results are sent as they are");
}

void checkText(const QByteArray& utf8) {
  const QString text = QString::fromUtf8(utf8);
  const QString shown = printable(text);
  require(shown == shown.simplified() && printable(textOfTokens(utf8.split('\n'))).size() >= 0,
          "a caption has single blanks");
  for (const char32_t character : shown.toUcs4()) {
    require(QChar::isPrint(character), "a caption can be shown");
  }
  require(cased(shown, "en", true).isEmpty() == shown.isEmpty(), "no caption gets lost");
}

}  // namespace

/// Messages are read the same however they are split, and any body is handled.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::span bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  const Reading whole = read(bytes, std::max<std::size_t>(bytes.size(), 1));
  const Reading pieces = read(bytes, 1 + data[0] % 16);
  require(whole.isDamaged == pieces.isDamaged && whole.messages.size() == pieces.messages.size(),
          "pieces do not matter");
  QByteArray again;
  for (std::size_t i = 0; i < whole.messages.size(); ++i) {
    const RecognizerMessage& message = whole.messages[i];
    require(message.kind == pieces.messages[i].kind && message.body == pieces.messages[i].body,
            "pieces do not matter");
    again += encoded(message.kind, message.body);
    checkSettings(message.body);
    checkResult(message.body);
    checkText(message.body);
  }
  require(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())).startsWith(again),
          "a message is sent as it was read");
  return 0;
}
