// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/sentences.h"

#include "platform/foundation/language_identifier.h"

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <QStringView>
#include <stdexcept>
#include <unicode/brkiter.h>

namespace velun {

namespace {

/// English abbreviations that the library's list of suppressions lacks and that hardly ever end a
/// sentence: titles and ranks before a name, and "for example". Those that often do end one
/// ("Inc.", "Jr.", "U.S.", "p.m.", "etc.") are left out on purpose: two sentences in one line read
/// worse than a line that begins in the middle.
constexpr std::array kNeverLast = {u"Dr.",  u"St.",  u"Lt.",  u"Gen.", u"Col.", u"Capt.",
                                   u"Sgt.", u"Maj.", u"Rev.", u"Gov.", u"Sen.", u"Rep.",
                                   u"Mt.",  u"e.g.", u"i.e.", u"E.g.", u"I.e."};

icu::BreakIterator& iteratorFor(const QString& language) {
  // Making an iterator with suppressions costs a third of a millisecond, setting its text nothing.
  thread_local std::map<QString, std::unique_ptr<icu::BreakIterator>> iterators;
  std::unique_ptr<icu::BreakIterator>& iterator = iterators[language];
  if (!iterator) {
    const QByteArray name = (language + QStringLiteral("@ss=standard")).toUtf8();
    UErrorCode status = U_ZERO_ERROR;
    iterator.reset(
        icu::BreakIterator::createSentenceInstance(icu::Locale(name.constData()), status));
    if (U_FAILURE(status)) throw std::runtime_error(u_errorName(status));
  }
  return *iterator;
}

QStringView lastWord(QStringView text) {
  qsizetype start = text.size();
  while (start > 0 && !text[start - 1].isSpace()) --start;
  return text.sliced(start);
}

/// A single capital letter after a capitalised word or at the start: "J. Smith", "John F. Kennedy".
bool endsWithInitial(QStringView trimmed) {
  const QStringView word = lastWord(trimmed);
  if (word.size() != 2 || word[1] != u'.' || !word[0].isUpper() || word[0] == u'I') return false;
  const QStringView before = lastWord(trimmed.chopped(word.size()).trimmed());
  return before.isEmpty() || before[0].isUpper();
}

/// Whether the sentence in English goes on although the rules see its end before `next`.
bool goesOn(QStringView sentence, QStringView next) {
  // A line break ends a sentence whatever stands before it.
  const QStringView trimmed = sentence.trimmed();
  const QStringView gap = sentence.sliced(trimmed.end() - sentence.begin());
  if (gap.contains(u'\n') || gap.contains(u'\r')) return false;
  const QStringView word = lastWord(trimmed);
  // "No." is a sentence of its own, "No. 5" is not.
  if (word == u"No." && !next.isEmpty() && next.front().isDigit()) return true;
  return endsWithInitial(trimmed) ||
         std::any_of(kNeverLast.begin(), kNeverLast.end(),
                     [word](const char16_t* abbreviation) { return word == abbreviation; });
}

/// The end of the sentence without opening quotes and brackets, which the rules leave with the
/// sentence before them when no space stands between (「 after 。).
qsizetype withoutOpening(const QString& text, qsizetype start, qsizetype end) {
  qsizetype last = end;
  while (last > start && (text[last - 1].category() == QChar::Punctuation_Open ||
                          text[last - 1].category() == QChar::Punctuation_InitialQuote)) {
    --last;
  }
  return last > start ? last : end;
}

}  // namespace

QStringList sentences(const QString& text, const QString& localeID) {
  const QString language = languageCode(localeID);
  const bool isEnglish = language == QLatin1String("en");
  icu::BreakIterator& iterator = iteratorFor(language);
  // Refers to the characters of `text` without copying them.
  const icu::UnicodeString characters(false, reinterpret_cast<const char16_t*>(text.utf16()),
                                      static_cast<int32_t>(text.size()));
  iterator.setText(characters);

  QStringList result;
  qsizetype start = 0;
  iterator.first();
  for (int32_t end = iterator.next(); end != icu::BreakIterator::DONE; end = iterator.next()) {
    const qsizetype last = end == text.size() ? end : withoutOpening(text, start, end);
    const QStringView sentence = QStringView(text).sliced(start, last - start);
    if (isEnglish && last < text.size() && goesOn(sentence, QStringView(text).sliced(last))) {
      continue;
    }
    result.append(sentence.toString());
    start = last;
  }
  return result;
}

}  // namespace velun
