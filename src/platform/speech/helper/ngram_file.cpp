// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/ngram_file.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <stdexcept>

namespace velun {

namespace {

constexpr std::int32_t kFileMagic = 0x7eb2fdd6;
constexpr std::int32_t kSymbolMagic = 0x7eb2fb74;
constexpr std::int32_t kHasInputSymbols = 1;
constexpr std::int32_t kHasOutputSymbols = 2;
constexpr qsizetype kMaxNameBytes = 1024;

/// Reads numbers and texts one after another; throws beyond the end.
class Cursor {
 public:
  explicit Cursor(const QByteArray& bytes) : bytes_(bytes) {}

  template <class Number>
  Number number() {
    Number value;
    std::memcpy(&value, take(sizeof value), sizeof value);
    return value;
  }
  QByteArray text() {
    const auto size = number<std::int32_t>();
    if (size < 0 || size > kMaxNameBytes) throw std::runtime_error("a name of a wrong length");
    return {take(size), size};
  }
  const char* take(qsizetype count) {
    if (count < 0 || count > bytes_.size() - at_) throw std::runtime_error("it ends too early");
    const char* begin = bytes_.constData() + at_;
    at_ += count;
    return begin;
  }
  qsizetype position() const { return at_; }

 private:
  const QByteArray& bytes_;
  qsizetype at_ = 0;
};

QHash<QString, int> readSymbols(Cursor& cursor) {
  if (cursor.number<std::int32_t>() != kSymbolMagic) throw std::runtime_error("no list of words");
  cursor.text();                  // its name
  cursor.number<std::int64_t>();  // the next free number
  const auto count = cursor.number<std::int64_t>();
  QHash<QString, int> symbols;
  for (std::int64_t i = 0; i < count; ++i) {
    const QString word = QString::fromUtf8(cursor.text());
    symbols.insert(word, static_cast<int>(cursor.number<std::int64_t>()));
  }
  return symbols;
}

/// Bytes of a bit set, which is made of 64-bit words.
qsizetype bitSetBytes(std::uint64_t bits) {
  return static_cast<qsizetype>((bits + 63) / 64 * 8);
}

template <class Value>
Value valueAt(const QByteArray& bytes, qsizetype begin, qsizetype index) {
  Value value;
  std::memcpy(&value, bytes.constData() + begin + index * qsizetype(sizeof value), sizeof value);
  return value;
}

/// In lower case, with the apostrophe that the language model has.
QStringList singleWords(const QString& text) {
  static const QRegularExpression gap(QStringLiteral("[^\\w']+"),
                                      QRegularExpression::UseUnicodePropertiesOption);
  QString plain = text.toLower();
  plain.replace(u'’', u'\'');
  return plain.split(gap, Qt::SkipEmptyParts);
}

}  // namespace

NgramFile NgramFile::read(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) throw std::runtime_error("it cannot be opened");
  NgramFile model;
  model.bytes_ = file.readAll();
  Cursor cursor(model.bytes_);
  const bool isFst = cursor.number<std::int32_t>() == kFileMagic;
  if (!isFst || cursor.text() != "ngram" || cursor.text() != "standard") {
    throw std::runtime_error("it is of another kind");
  }
  cursor.number<std::int32_t>();  // version
  const auto flags = cursor.number<std::int32_t>();
  cursor.take(4 * 8);  // properties, start, states, arcs
  if (flags & kHasInputSymbols) model.words_ = readSymbols(cursor);
  if (flags & kHasOutputSymbols) readSymbols(cursor);
  const auto states = cursor.number<std::uint64_t>();
  const auto arcs = cursor.number<std::uint64_t>();
  const auto finals = cursor.number<std::uint64_t>();
  const auto most = static_cast<std::uint64_t>(model.bytes_.size());
  if (states > most || arcs > most || finals > most) throw std::runtime_error("a wrong number");
  cursor.take(bitSetBytes(2 * states + 1) + bitSetBytes(arcs + states + 1) + bitSetBytes(states));
  cursor.take(static_cast<qsizetype>(states + 1) * 4);  // the words of contexts
  model.arcs_.count = static_cast<qsizetype>(arcs);
  model.arcs_.labels = cursor.position();
  cursor.take(model.arcs_.count * 4);
  cursor.take(static_cast<qsizetype>(states + 1 + finals) * 4);  // back-off and final weights
  model.arcs_.costs = cursor.position();
  cursor.take(model.arcs_.count * 4);
  return model;
}

void NgramFile::favour(const QStringList& words, float gain) {
  QSet<std::int32_t> labels;
  for (const QString& word : words) {
    if (const int label = words_.value(word, 0)) labels += label;
  }
  // The first arcs are those without a context, one for each word in the order of the labels.
  QSet<std::int32_t> wanted;
  std::int32_t last = 0;
  for (qsizetype i = 0; i < arcs_.count; ++i) {
    const auto label = valueAt<std::int32_t>(bytes_, arcs_.labels, i);
    if (label <= last) break;
    last = label;
    const bool isCommon = valueAt<float>(bytes_, arcs_.costs, i) < kMinCost;
    if (labels.contains(label) && !isCommon) wanted += label;
  }
  if (wanted.isEmpty()) return;
  char* costs = bytes_.data() + arcs_.costs;
  for (qsizetype i = 0; i < arcs_.count; ++i) {
    if (!wanted.contains(valueAt<std::int32_t>(bytes_, arcs_.labels, i))) continue;
    const float cost = valueAt<float>(bytes_, arcs_.costs, i) - gain;
    std::memcpy(costs + i * qsizetype(sizeof cost), &cost, sizeof cost);
  }
}

QStringList unknownUserWords(const QString& userWords, const QString& path) {
  QStringList unknown;
  try {
    const NgramFile model = NgramFile::read(path);
    for (const QString& each : userWords.split(u'\n', Qt::SkipEmptyParts)) {
      const QStringList words = singleWords(each);
      const bool isKnown =
          std::ranges::all_of(words, [&model](const QString& word) { return model.hasWord(word); });
      if (!isKnown) unknown << each;
    }
  } catch (const std::runtime_error&) {
    // Captions report a damaged model when they start.
  }
  return unknown;
}

QStringList wordsToFavour(const QString& userWords) {
  QStringList words;
  for (const QString& word : singleWords(userWords)) {
    words << word << word + QStringLiteral("'s");
  }
  words.removeDuplicates();
  return words;
}

}  // namespace velun
