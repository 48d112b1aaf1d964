// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/ngram_file.h"

#include "support/suite.h"

#include <cstring>
#include <QFile>
#include <QTemporaryDir>

using namespace velun;

namespace {

template <class Number>
void append(QByteArray& bytes, Number number) {
  bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
}

void append(QByteArray& bytes, const char* text) {
  append(bytes, static_cast<std::int32_t>(std::strlen(text)));
  bytes.append(text);
}

void appendSymbols(QByteArray& bytes) {
  append(bytes, std::int32_t(0x7eb2fb74));
  append(bytes, "words");
  append(bytes, std::int64_t(4));
  append(bytes, std::int64_t(4));
  std::int64_t number = 0;
  for (const char* word : {"<eps>", "the", "huebner", "delhi"}) {
    append(bytes, word);
    append(bytes, number++);
  }
}

/// "the", "huebner" and "delhi" without a context, then "huebner" and "the" after some word.
constexpr std::int32_t kLabels[] = {1, 2, 3, 2, 1};
constexpr float kCosts[] = {3.5F, 12, 11, 5, 2};

QByteArray smallModel() {
  QByteArray bytes;
  append(bytes, std::int32_t(0x7eb2fdd6));
  append(bytes, "ngram");
  append(bytes, "standard");
  append(bytes, std::int32_t(4));
  append(bytes, std::int32_t(3));
  for (int i = 0; i < 4; ++i) append(bytes, std::int64_t(0));
  appendSymbols(bytes);
  appendSymbols(bytes);
  for (const std::uint64_t count : {2, 5, 1}) append(bytes, count);
  for (int i = 0; i < 3; ++i) append(bytes, std::uint64_t(0));  // the bit sets
  for (int i = 0; i < 3; ++i) append(bytes, std::int32_t(0));   // the words of contexts
  for (const std::int32_t label : kLabels) append(bytes, label);
  for (int i = 0; i < 4; ++i) append(bytes, 0.0F);  // back-off, final
  for (const float cost : kCosts) append(bytes, cost);
  return bytes;
}

std::vector<float> costsOf(const NgramFile& model) {
  std::vector<float> costs(std::size(kCosts));
  const QByteArray end = model.bytes().last(sizeof kCosts);
  std::memcpy(costs.data(), end.constData(), sizeof kCosts);
  return costs;
}

}  // namespace

class NgramFileTest final : public test::Suite {
  Q_OBJECT

  QTemporaryDir folder_;

  QString write(const QByteArray& bytes) const {
    QFile file(folder_.filePath("Gr.fst"));
    return file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size() ? file.fileName()
                                                                            : QString();
  }

 private Q_SLOTS:
  void favouredWordsAreLikelierInEveryContext() {
    NgramFile model = NgramFile::read(write(smallModel()));
    QVERIFY(model.hasWord("delhi") && !model.hasWord("dijkstra"));
    model.favour({"huebner", "dijkstra"}, 3);
    QCOMPARE(costsOf(model), (std::vector<float>{3.5F, 9, 11, 2, 2}));
    QCOMPARE(model.bytes().chopped(sizeof kCosts), smallModel().chopped(sizeof kCosts));
  }

  void commonWordsAreNotFavoured() {
    NgramFile model = NgramFile::read(write(smallModel()));
    model.favour({"the"}, 3);
    QCOMPARE(model.bytes(), smallModel());
  }

  void unknownWordsOfTheListAreFound() {
    const QString path = write(smallModel());
    QCOMPARE(unknownUserWords("Huebner\nDijkstra\nThe Delhi\nNew Delhi", path),
             QStringList({"Dijkstra", "New Delhi"}));
    QVERIFY(unknownUserWords("Huebner", folder_.filePath("missing")).isEmpty());
  }

  void aPhraseIsFavouredWordByWord() {
    QCOMPARE(wordsToFavour("New-Delhi\nO’Hara"),
             QStringList({"new", "new's", "delhi", "delhi's", "o'hara", "o'hara's"}));
  }

  void incompleteFilesAreRefused() {
    const QByteArray whole = smallModel();
    for (qsizetype size = 0; size < whole.size(); ++size) {
      const QString path = write(whole.first(size));
      QVERIFY_EXCEPTION_THROWN(NgramFile::read(path), std::runtime_error);
    }
  }

  void hugeNumbersAreRefused() {
    const QByteArray whole = smallModel();
    for (qsizetype at = 0; at + 8 <= whole.size() - qsizetype(sizeof kCosts); ++at) {
      QByteArray bytes = whole;
      bytes.replace(at, 8, QByteArray(8, '\x7f'));
      try {
        NgramFile model = NgramFile::read(write(bytes));
        model.favour({"huebner"}, 3);
        QCOMPARE(model.bytes().size(), whole.size());
      } catch (const std::runtime_error&) {
        // Refused.
      }
    }
  }
};

QTEST_GUILESS_MAIN(NgramFileTest)
#include "ngram_file_test.moc"
