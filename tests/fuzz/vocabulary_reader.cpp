// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/student/model_format_error.h"
#include "platform/translation/student/vocabulary.h"
#include "require.h"

#include <QString>

using namespace velun;
using fuzz::require;

/// A vocabulary of any bytes is rejected or produces only its own tokens.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  try {
    const Vocabulary vocabulary(std::as_bytes(std::span(data, size)));
    const std::vector<int> tokens = vocabulary.encode(QStringLiteral("Hello, world 안녕"));
    for (const int token : tokens) {
      require(token >= 0 && token < vocabulary.size(), "a token is of the vocabulary");
    }
    vocabulary.decode(tokens);
    vocabulary.decode(std::vector<int>{-1, 0, vocabulary.size(), vocabulary.endToken()});
  } catch (const ModelFormatError&) {
  }
  return 0;
}
