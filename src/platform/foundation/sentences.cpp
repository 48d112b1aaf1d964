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

/// English abbreviations that hardly ever end a sentence (titles and ranks before a name, and "for
/// example") and that ICU's list of suppressions lacks. Those that often end one ("Inc.", "Jr.",
/// "U.S.", "p.m.", "etc.") are left out on purpose: two sentences in one line are worse than a line
/// that begins in the middle of a sentence.
constexpr std::array kNeverFinal = {u"Dr.",  u"St.",  u"Lt.",  u"Gen.", u"Col.", u"Capt.",
                                    u"Sgt.", u"Maj.", u"Rev.", u"Gov.", u"Sen.", u"Rep.",
                                    u"Mt.",  u"e.g.", u"i.e.", u"E.g.", u"I.e."};

icu::BreakIterator& iteratorFor(const QString& language) {
  // Creating an iterator with suppressions takes a third of a millisecond; setting its text is
  // free.
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

/// Whether an English sentence continues in `next` although ICU found its end before it.
bool continues(QStringView sentence, QStringView next) {
  // A line break always ends a sentence.
  const QStringView trimmed = sentence.trimmed();
  const QStringView gap = sentence.sliced(trimmed.end() - sentence.begin());
  if (gap.contains(u'\n') || gap.contains(u'\r')) return false;
  const QStringView word = lastWord(trimmed);
  // "No." is a sentence of its own, "No. 5" is not.
  if (word == u"No." && !next.isEmpty() && next.front().isDigit()) return true;
  return endsWithInitial(trimmed) ||
         std::any_of(kNeverFinal.begin(), kNeverFinal.end(),
                     [word](const char16_t* abbreviation) { return word == abbreviation; });
}

/// The end of the sentence without trailing opening quotes and brackets: ICU leaves them with the
/// sentence before when there is no space between (「 after 。).
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
  // Does not copy the characters of `text`.
  const icu::UnicodeString characters(false, reinterpret_cast<const char16_t*>(text.utf16()),
                                      static_cast<int32_t>(text.size()));
  iterator.setText(characters);

  QStringList result;
  qsizetype start = 0;
  iterator.first();
  for (int32_t end = iterator.next(); end != icu::BreakIterator::DONE; end = iterator.next()) {
    const qsizetype last = end == text.size() ? end : withoutOpening(text, start, end);
    const QStringView sentence = QStringView(text).sliced(start, last - start);
    if (isEnglish && last < text.size() && continues(sentence, QStringView(text).sliced(last))) {
      continue;
    }
    result.append(sentence.toString());
    start = last;
  }
  return result;
}

}  // namespace velun
