// SPDX-License-Identifier: GPL-3.0-or-later
#include "translation/caption_translator.h"

#include "language/localization.h"
#include "support/scripted_translation_platform.h"
#include "support/settle.h"
#include "support/suite.h"

#include <algorithm>

using namespace velun;
using test::settle;
using test::TranslationScript;

namespace {

/// A translator over a list of lines, as the caption model has it, with all that it reports.
struct Bench {
  explicit Bench(const QStringList& texts = {}) {
    for (const QString& text : texts) addLine(text);
    QObject::connect(translator.get(), &CaptionTranslator::translated,
                     [this](const QUuid& id, const QString& language, const QString& text) {
                       reports.append(language + ": " + text);
                       std::ranges::find(lines, id, &Line::id)->translations[language] = text;
                     });
    QObject::connect(translator.get(), &CaptionTranslator::failed,
                     [this](const QString& message) { reports.append(message); });
  }

  void addLine(const QString& text, const QString& language = "en_US") {
    Line line;
    line.text = text;
    line.sourceLanguage = language;
    lines.push_back(line);
    translator->linesAppended();
  }

  /// Every translator from now on translates every text to upper case.
  void translateToUpperCase() {
    platform.translate = [](const QString& text) {
      return text.toUpper();
    };
  }

  std::shared_ptr<TranslationScript> configure(const QString& source = "en_US",
                                               const QString& target = "ko") {
    translator->configure(true, true, source, target);
    settle();
    return platform.scripts.back();
  }

  test::ScriptedTranslationPlatform platform;
  std::vector<Line> lines;
  QStringList reports;
  std::unique_ptr<CaptionTranslator> translator =
      std::make_unique<CaptionTranslator>(platform, lines);
};

}  // namespace

class CaptionTranslatorTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void sameLanguageIgnoresRegionAndScript_data() {
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::addColumn<bool>("same");
    QTest::newRow("region against none") << "en_US"
                                         << "en" << true;
    QTest::newRow("two regions") << "en_US"
                                 << "en-GB" << true;
    QTest::newRow("script") << "zh_Hans_CN"
                            << "zh-Hant" << true;
    QTest::newRow("different") << "en_US"
                               << "ko" << false;
    QTest::newRow("same code, other case") << "EN_us"
                                           << "en" << true;
    QTest::newRow("no source") << ""
                               << "en" << false;
    QTest::newRow("no target") << "en"
                               << "" << false;
    QTest::newRow("neither") << ""
                             << "" << false;
    QTest::newRow("only regions") << "_US"
                                  << "_US" << false;
    QTest::newRow("undetermined") << "und"
                                  << "und" << false;
  }
  void sameLanguageIgnoresRegionAndScript() {
    QFETCH(QString, source);
    QFETCH(QString, target);
    QTEST(CaptionTranslator::hasSameLanguage(source, target), "same");
  }

  void asksForBothLanguagesWithoutTheRegionOfTheSource() {
    Bench bench;
    auto script = bench.configure("en_US", "ko");
    QCOMPARE(script->source, QString("en"));
    QCOMPARE(script->target, QString("ko"));
    script = bench.configure("zh_Hant_TW", "pt-BR");
    QCOMPARE(script->source, QString("zh-Hant"));
    QCOMPARE(script->target, QString("pt-BR"));
  }

  void isInactiveWithNothingToTranslate_data() {
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<bool>("hasContent");
    QTest::addColumn<QString>("target");
    QTest::newRow("switched off") << false << true << "ko";
    QTest::newRow("no content") << true << false << "ko";
    QTest::newRow("same language") << true << true << "en";
  }
  void isInactiveWithNothingToTranslate() {
    QFETCH(bool, enabled);
    QFETCH(bool, hasContent);
    QFETCH(QString, target);
    Bench bench({"one"});
    bench.translator->configure(enabled, hasContent, "en_US", target);
    settle();
    QVERIFY(!bench.translator->isActive());
    QVERIFY(bench.platform.scripts.empty());
  }

  void everyConfigurationStartsAfresh() {
    Bench bench;
    for (std::size_t count = 1; count <= 4; ++count) {
      bench.configure();
      QCOMPARE(bench.platform.scripts.size(), count);
      QCOMPARE(std::ranges::count_if(bench.platform.scripts,
                                     [](const auto& script) { return script->isOpen; }),
               1);
    }
  }

  void theSameLanguagesAfterAPauseStartAfresh() {
    Bench bench;
    const auto before = bench.configure();
    bench.translator->configure(false, true, "en_US", "ko");
    QVERIFY(!before->isOpen);
    QVERIFY(bench.configure() != before);
  }

  void preparesBeforeTheFirstLine() {
    Bench bench({"one"});
    bench.platform.prepareScript = [](TranslationScript& script) {
      script.waitsForPreparation = true;
    };
    const auto script = bench.configure();
    QVERIFY(script->requests.empty());
    script->prepared.complete(true);
    settle();
    QCOMPARE(script->requests.size(), std::size_t{1});
  }

  void aFailedPreparationIsLeftToTheFirstLine() {
    Bench bench({"one"});
    bench.platform.prepareScript = [](TranslationScript& script) {
      script.waitsForPreparation = true;
    };
    const auto script = bench.configure();
    script->prepared.fail(std::make_exception_ptr(Failure("no connection")));
    settle();
    QCOMPARE(bench.reports, QStringList());
    QCOMPARE(script->requests.size(), std::size_t{1});
  }

  void linesAreTranslatedInOrderOneAtATime() {
    Bench bench({"one", "two"});
    const auto script = bench.configure();
    QCOMPARE(script->requests.size(), std::size_t{1});
    script->requests[0].succeed("하나");
    settle();
    QCOMPARE(script->requests.size(), std::size_t{2});
    QCOMPARE(script->requests[1].text, QString("two"));
    script->requests[1].succeed("둘");
    settle();
    QCOMPARE(bench.reports, QStringList({"ko: 하나", "ko: 둘"}));
  }

  void appendedLinesAreTranslated() {
    Bench bench;
    bench.translateToUpperCase();
    bench.configure();
    bench.addLine("one");
    settle();
    bench.addLine("two");
    bench.addLine("three");
    settle();
    QCOMPARE(bench.reports, QStringList({"ko: ONE", "ko: TWO", "ko: THREE"}));
  }

  void aLineAppendedDuringATranslationIsTranslatedNext() {
    Bench bench({"one"});
    const auto script = bench.configure();
    bench.addLine("two");
    settle();
    QCOMPARE(script->requests.size(), std::size_t{1});
    script->requests[0].succeed("하나");
    settle();
    QCOMPARE(script->requests.size(), std::size_t{2});
  }

  void aLineAppendedWhileInactiveIsTranslatedLater() {
    Bench bench;
    bench.translateToUpperCase();
    bench.translator->configure(false, true, "en_US", "ko");
    bench.addLine("one");
    settle();
    QCOMPARE(bench.reports, QStringList());
    bench.configure();
    QCOMPARE(bench.reports, QStringList({"ko: ONE"}));
  }

  void linesOfAnotherLanguageAreSkipped() {
    Bench bench;
    bench.translateToUpperCase();
    bench.configure();
    bench.addLine("bonjour", "fr_FR");
    bench.addLine("hello", "en_GB");
    bench.lines.emplace_back().text = "imported";
    bench.addLine("one");
    settle();
    QCOMPARE(bench.reports, QStringList({"ko: ONE"}));
  }

  void translatedLinesAreSkipped() {
    Bench bench({"one", "two"});
    bench.lines[0].translations["ko"] = "하나";
    const auto script = bench.configure();
    QCOMPARE(script->requests[0].text, QString("two"));
  }

  void anotherTargetTranslatesAgainAndKeepsBoth() {
    Bench bench({"one"});
    bench.translateToUpperCase();
    bench.configure();
    bench.configure("en_US", "fr");
    QCOMPARE(bench.lines[0].translations.size(), std::size_t{2});
    QCOMPARE(bench.reports, QStringList({"ko: ONE", "fr: ONE"}));
  }

  void aFailureIsReportedAndTheNextLineFollows() {
    Bench bench({"one", "two"});
    const auto script = bench.configure();
    script->requests[0].fail("the model is broken");
    settle();
    script->requests[1].succeed("둘");
    settle();
    QCOMPARE(bench.reports, QStringList({"Translation error: the model is broken", "ko: 둘"}));
    bench.addLine("three");
    settle();
    QCOMPARE(script->requests.size(), std::size_t{3});
    QCOMPARE(script->requests[2].text, QString("three"));
  }

  void errorsAreInTheInterfaceLanguage() {
    Bench bench({"one"});
    const auto script = bench.configure();
    Localization::shared().setLanguage(AppLanguage::korean);
    script->requests[0].fail("모델이 없습니다");
    settle();
    QCOMPARE(bench.reports, QStringList({"번역 오류: 모델이 없습니다"}));
  }

  void replacedLinesAreForgotten() {
    Bench bench({"one", "two"});
    const auto before = bench.configure();
    bench.lines.clear();
    bench.translator->configure(true, true, "en_US", "ko");
    bench.addLine("other");
    settle();
    QCOMPARE(before->requests.size(), std::size_t{1});
    QCOMPARE(bench.platform.scripts.back()->requests[0].text, QString("other"));
  }

  void resultsAfterAReconfigurationAreDiscarded_data() {
    QTest::addColumn<bool>("fails");
    QTest::addColumn<bool>("stillEnabled");
    QTest::newRow("translation, reconfigured") << false << true;
    QTest::newRow("translation, switched off") << false << false;
    QTest::newRow("failure, reconfigured") << true << true;
    QTest::newRow("failure, switched off") << true << false;
  }
  void resultsAfterAReconfigurationAreDiscarded() {
    QFETCH(bool, fails);
    QFETCH(bool, stillEnabled);
    Bench bench({"one", "two"});
    bench.platform.prepareScript = [&bench](TranslationScript& script) {
      script.cancels = bench.platform.scripts.size() > 1;
    };
    const auto script = bench.configure();
    bench.translator->configure(stillEnabled, true, "en_US", "ko");
    settle();
    if (fails) {
      script->requests[0].fail("late");
    } else {
      script->requests[0].succeed("late");
    }
    settle();
    QCOMPARE(bench.reports, QStringList());
    QCOMPARE(script->requests.size(), std::size_t{1});
    QVERIFY(!script->isOpen);
  }

  void aReconfigurationCancelsTheTextInProgress() {
    Bench bench({"one"});
    const auto first = bench.configure();
    QVERIFY(first->isOpen);
    const auto second = bench.configure();
    QVERIFY(!first->isOpen);
    QVERIFY(first->requests[0].stop.stop_requested());
    QCOMPARE(bench.reports, QStringList());
    second->requests[0].succeed("하나");
    settle();
    QCOMPARE(bench.reports, QStringList({"ko: 하나"}));
  }

  void configureFromInsideAResultIsSafe() {
    Bench bench({"one", "two"});
    const auto first = bench.configure();
    QObject::connect(bench.translator.get(), &CaptionTranslator::translated, [&bench] {
      bench.translator->configure(bench.platform.scripts.size() < 2, true, "en_US", "ko");
    });
    first->requests[0].succeed("하나");
    settle();
    QCOMPARE(first->requests.size(), std::size_t{1});
    QVERIFY(!first->isOpen);
    QCOMPARE(bench.platform.scripts.back()->requests[0].text, QString("two"));
  }

  void nothingIsReportedAfterDestruction() {
    Bench bench({"one"});
    bench.platform.prepareScript = [](TranslationScript& script) {
      script.cancels = false;
    };
    const auto script = bench.configure();
    bench.translator.reset();
    script->requests[0].succeed("late");
    settle();
    QCOMPARE(bench.reports, QStringList());
    QVERIFY(!script->isOpen);
  }
};

QTEST_GUILESS_MAIN(CaptionTranslatorTest)
#include "caption_translator_test.moc"
