// SPDX-License-Identifier: GPL-3.0-or-later
#include "estimate.h"
#include "fst_text.h"
#include "mixture.h"

#include <cmath>
#include <fstream>
#include <QTemporaryDir>
#include <QTest>
#include <sstream>

namespace {

constexpr const char* kFirstText =
    "the dog saw the cat\nthe cat saw the dog\nthe dog saw a bird\na bird saw the cat\n"
    "the cat ran\nthe dog ran\na dog ran home\nthe bird saw a dog\nthe dog saw the bird\n"
    "a cat saw a cat ran home\nthe cat saw a dog\nhome\n";
constexpr const char* kSecondText =
    "run home dog\nrun home cat\nthe bird ran home\na cat ran\nrun dog run\nthe bird ran\n"
    "run home dog run home\nrun cat\nsaw the bird run\nthe dog saw the cat run home\n";

Vocabulary vocabulary() {
  const QTemporaryDir folder;
  const std::string path = folder.filePath("words").toStdString();
  std::ofstream(path) << "<eps> 0\nthe 1\ndog 2\ncat 3\nbird 4\nsaw 5\nran 6\na 7\nhome 8\nrun 9\n";
  return Vocabulary(path);
}

LanguageModel learned(const char* text, const Vocabulary& words) {
  std::istringstream input(text);
  return estimated(readSentences(input, words), words);
}

/// The sum of all probabilities after a context of `length` words.
double sumAfter(const LanguageModel& model, int length, Key context, const Vocabulary& words) {
  double sum = 0;
  for (Word word = 0; word < words.size(); ++word) {
    sum += std::exp(model.probability(length + 1, extended(context, word)));
  }
  return sum;
}

/// The largest distance of a sum from 1 after any context of two words or of the beginning.
double largestError(const LanguageModel& model, const Vocabulary& words) {
  double largest = 0;
  for (Word first = 1; first < words.end(); ++first) {
    for (Word second = 1; second < words.begin(); ++second) {
      const double sum = sumAfter(model, 2, extended(first, second), words);
      largest = std::max(largest, std::abs(sum - 1));
    }
  }
  return std::max(largest, std::abs(sumAfter(model, 1, words.begin(), words) - 1));
}

}  // namespace

class LanguageModelTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void estimatedProbabilitiesAddUpToOne();
  void mixedProbabilitiesAreTheWeightedSum();
  void prunedProbabilitiesAddUpToOne();
  void writtenModelIsReadBack();
  void trainingTextIsMoreLikelyThanOtherText();

 private:
  const Vocabulary words_ = vocabulary();
};

void LanguageModelTest::estimatedProbabilitiesAddUpToOne() {
  QVERIFY(largestError(learned(kFirstText, words_), words_) < 1e-3);
}

void LanguageModelTest::mixedProbabilitiesAreTheWeightedSum() {
  const LanguageModel first = learned(kFirstText, words_), second = learned(kSecondText, words_);
  const LanguageModel model = mixed({&first, &second}, {0.7, 0.3});
  for (const Entry& each : model.entries(3)) {
    const double expected = 0.7 * std::exp(first.probability(3, each.key)) +
                            0.3 * std::exp(second.probability(3, each.key));
    QVERIFY(std::abs(std::exp(each.probability) - expected) < 1e-5);
  }
  QVERIFY(largestError(model, words_) < 1e-3);
}

void LanguageModelTest::prunedProbabilitiesAddUpToOne() {
  const LanguageModel first = learned(kFirstText, words_), second = learned(kSecondText, words_);
  const LanguageModel all = mixed({&first, &second}, {0.5, 0.5});
  const std::size_t before = all.entries(2).size() + all.entries(3).size();
  const LanguageModel model = pruned(all, before / 2, words_);
  const std::size_t after = model.entries(2).size() + model.entries(3).size();
  QVERIFY(after > 0 && after <= before / 2);
  QVERIFY(largestError(model, words_) < 1e-3);
}

void LanguageModelTest::writtenModelIsReadBack() {
  const LanguageModel model = learned(kFirstText, words_);
  std::stringstream text;
  writeFst(text, model, words_);
  const LanguageModel read = readFst(text, words_);
  for (int words = 2; words <= 3; ++words) {
    QCOMPARE(read.entries(words).size(), model.entries(words).size());
    for (const Entry& each : model.entries(words)) {
      // Weights are written in steps of 1/16.
      QVERIFY(std::abs(read.probability(words, each.key) - each.probability) < 0.04);
    }
  }
}

void LanguageModelTest::trainingTextIsMoreLikelyThanOtherText() {
  const LanguageModel model = learned(kFirstText, words_);
  std::istringstream same(kFirstText), other(kSecondText);
  QVERIFY(perplexity(model, readSentences(same, words_)) <
          perplexity(model, readSentences(other, words_)));
}

QTEST_GUILESS_MAIN(LanguageModelTest)

#include "language_model_test.moc"
