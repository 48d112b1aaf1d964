// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/student/model_format_error.h"
#include "platform/translation/student/shortlist.h"

#include <cstdint>
#include <cstdlib>

// A shortlist of any bytes is rejected or gives only candidates of the vocabulary.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr int kSourceTokens = 6;
  constexpr int kTargetTokens = 20;
  try {
    const velun::Shortlist shortlist(std::as_bytes(std::span(data, size)), kSourceTokens,
                                     kTargetTokens);
    for (const bool oneVocabulary : {false, true}) {
      for (const int token : shortlist.candidates(std::vector<int>{0, 3, 5}, oneVocabulary)) {
        if (token < 0 || token >= kTargetTokens) std::abort();
      }
    }
  } catch (const velun::ModelFormatError&) {
  }
  return 0;
}
