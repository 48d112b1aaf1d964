// SPDX-License-Identifier: GPL-3.0-or-later
// Random sequences through the caption model. `--runs N` sets how many (500), `--seed N` where
// they start (1): run i has the seed N + i, so that a failing run can be repeated alone.
#include "captions/model_checker.h"
#include "support/suite.h"

using namespace velun;
using test::ModelChecker;

namespace {

int runs = 500;
std::uint64_t firstSeed = 1;

/// Removes `--runs` and `--seed` from the arguments; the rest is for Qt Test.
std::vector<char*> withoutOwnOptions(int argc, char** argv) {
  std::vector<char*> rest;
  for (int i = 0; i < argc; ++i) {
    const QByteArrayView argument(argv[i]);
    const bool hasValue = i + 1 < argc;
    if (argument == "--runs" && hasValue) {
      runs = QByteArray(argv[++i]).toInt();
    } else if (argument == "--seed" && hasValue) {
      firstSeed = QByteArray(argv[++i]).toULongLong();
    } else {
      rest.push_back(argv[i]);
    }
  }
  return rest;
}

}  // namespace

class CaptionModelCheckerTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void randomSequencesMatchTheReferenceModel() {
    constexpr int kSteps = 60;
    ModelChecker::Counts counts;
    for (int run = 0; run < runs; ++run) {
      const std::uint64_t seed = firstSeed + static_cast<std::uint64_t>(run);
      ModelChecker checker(seed, counts);
      const std::optional<QString> problem = checker.run(kSteps);
      QVERIFY2(
          !problem,
          qUtf8Printable(QStringLiteral("seed %1: %2").arg(seed).arg(problem.value_or(QString()))));
    }
    qInfo(
        "%d runs from seed %llu: %d lines, %d translations, %d starts (%d cancelled), %d failed "
        "writes, %d files compared, %d new sessions, %d deletions, %d late answers",
        runs, static_cast<unsigned long long>(firstSeed), counts.lines, counts.translations,
        counts.engineStarts, counts.cancelledStarts, counts.writeFailures, counts.comparedFiles,
        counts.newSessions, counts.deletions, counts.lateAnswers);
    if (runs < 100) return;
    for (const int count : {counts.lines, counts.translations, counts.engineStarts,
                            counts.cancelledStarts, counts.writeFailures, counts.comparedFiles,
                            counts.newSessions, counts.deletions, counts.lateAnswers}) {
      QVERIFY2(count > runs / 50, "The sequences hardly reach something");
    }
  }
};

int main(int argc, char** argv) {
  std::vector<char*> arguments = withoutOwnOptions(argc, argv);
  int count = static_cast<int>(arguments.size());
  const QCoreApplication application(count, arguments.data());
  // Qt Test's watchdog ends a test after five minutes; a long check takes a multiple of that.
  qputenv("QTEST_FUNCTION_TIMEOUT", QByteArray::number(5 * 60 * 1000 + runs * 200));
  CaptionModelCheckerTest test;
  return QTest::qExec(&test, count, arguments.data());
}
#include "caption_model_checker_test.moc"
