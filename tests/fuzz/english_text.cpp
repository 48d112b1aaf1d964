// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/english/english_text.h"

#include "../platform/speech/english/growing_draft.h"
#include "require.h"

#include <array>

using namespace velun;
using fuzz::require;

namespace {

constexpr std::array kWords = {
    "zero",    "one",     "two",    "five",      "nine",     "ten",      "twelve",  "nineteen",
    "twenty",  "thirty",  "ninety", "hundred",   "thousand", "million",  "billion", "first",
    "second",  "third",   "tenth",  "hundredth", "eighties", "hundreds", "oh",      "o",
    "and",     "a",       "point",  "half",      "percent",  "per",      "cent",    "cents",
    "dollars", "dollar",  "euros",  "to",        "or",       "out",      "of",      "at",
    "in",      "between", "the",    "quarter",   "past",     "o'clock",  "p",       "m",
    "am",      "pm",      "may",    "March",     "june",     "i",        "i'm",     "u",
    "s",       "t",       "v",      "people",    "[unk]",    "trillion", "vision",  "four",
};

/// Two bits of each byte are the marks after a word, the others choose it.
CaptionWords wordsOf(const uint8_t* data, std::size_t size) {
  CaptionWords words;
  for (std::size_t i = 0; i < size; ++i) {
    CaptionWord word{QString::fromLatin1(kWords[data[i] % kWords.size()]), {}};
    const int marks = data[i] / 64;
    if (marks == 1) word.marks = u'.';
    if (marks == 2) word.isBeforePause = true;
    words.push_back(word);
  }
  return words;
}

QString marksOf(const CaptionWords& words) {
  QString marks;
  for (const CaptionWord& word : words) {
    if (word.text != QLatin1String("[unk]")) marks += word.marks;
  }
  return marks;
}

}  // namespace

/// No mark is lost, no word is empty, and a number in a draft never changes back.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  constexpr std::size_t kMaxWords = 64;
  const CaptionWords words = wordsOf(data, std::min(size, kMaxWords));
  const CaptionWords written = writeEnglish(words, {});
  // An unknown word gives its mark to the word before it, which may have one already.
  const bool hasUnknown = words.size() != writeEnglish(words, {false, true}).size() ||
                          joinedText(words).contains(QLatin1String("[unk]"));
  if (!hasUnknown) require(marksOf(written) == marksOf(words), "every mark stays");
  for (const CaptionWord& word : written) require(!word.text.isEmpty(), "no word is empty");
  require(test::isStable(words), "a number in a draft stays");
  require(test::isStable(words, false), "a letter in a draft stays");

  const QString text =
      QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  const CaptionWords any = captionWords(text);
  require(captionWords(joinedText(any)) == any, "joined words are the same words");
  writeEnglish(any, {});
  return 0;
}
