// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/english/english_text.h"

#include "platform/speech/english/numbers.h"
#include "platform/speech/english/phrase.h"
#include "platform/speech/english/spelled_letters.h"

#include <utility>

namespace velun {

namespace {

/// Removes the recognizer's marker for unknown words. Nothing may be joined across it, so it leaves
/// a pause.
CaptionWords withoutUnknown(const CaptionWords& words) {
  CaptionWords known;
  known.reserve(words.size());
  for (const CaptionWord& word : words) {
    const bool isUnknown =
        word.text == QLatin1String("[unk]") || word.text == QLatin1String("<unk>");
    if (!isUnknown) {
      known.push_back(word);
    } else if (!known.empty()) {
      known.back().isBeforePause = true;
      if (known.back().marks.isEmpty()) known.back().marks = word.marks;
    }
  }
  return known;
}

/// "i", "i'm", "i've"
CaptionWord withCapitalI(CaptionWord word) {
  const bool isI = word.text.startsWith(u'i') &&
                   (word.text.size() == 1 || word.text[1] == u'\'' || word.text[1] == u'’');
  if (isI) word.text[0] = u'I';
  return word;
}

CaptionWord joinedWord(const CaptionWords& words, const Piece& piece) {
  const CaptionWord& first = words[static_cast<std::size_t>(piece.begin)];
  CaptionWord word = words[static_cast<std::size_t>(piece.end - 1)];
  word.begin = first.begin;
  word.text = piece.text;
  // The full stop of "p.m." is also the end of a sentence.
  if (word.text.endsWith(u'.') && word.marks.startsWith(u'.')) word.text.chop(1);
  return word;
}

class Writer {
 public:
  Writer(const CaptionWords& words, EnglishTextOptions options)
      : words_(words), options_(options) {}

  CaptionWords write() {
    const auto count = static_cast<qsizetype>(words_.size());
    for (qsizetype begin = 0, end = 0; begin < count; begin = end) {
      end = begin;
      while (end < count && !endsPhrase(words_[static_cast<std::size_t>(end)])) ++end;
      if (end < count) ++end;
      writePhrase({words_, begin, end, options_.mayContinue});
    }
    return std::move(written_);
  }

 private:
  void writePhrase(const Phrase& phrase) {
    for (qsizetype at = phrase.begin(); at < phrase.end();) {
      std::optional<Rewriting> rewriting;
      if (options_.numbersAsDigits) rewriting = writeNumber(phrase, at);
      if (!rewriting) rewriting = writeSpelledLetters(phrase, at);
      if (phrase.hasReachedEnd()) {
        keep(at, phrase.end());
        return;
      }
      if (!rewriting) rewriting = Rewriting{at + 1, {}};
      for (const Piece& piece : rewriting->pieces) {
        keep(at, piece.begin);
        written_.push_back(joinedWord(words_, piece));
        at = piece.end;
      }
      keep(at, rewriting->end);
      at = rewriting->end;
    }
  }

  void keep(qsizetype begin, qsizetype end) {
    for (qsizetype at = begin; at < end; ++at) {
      written_.push_back(withCapitalI(words_[static_cast<std::size_t>(at)]));
    }
  }

  const CaptionWords& words_;
  EnglishTextOptions options_;
  CaptionWords written_;
};

}  // namespace

CaptionWords writeEnglish(const CaptionWords& words, EnglishTextOptions options) {
  const CaptionWords known = withoutUnknown(words);
  return Writer(known, options).write();
}

}  // namespace velun
