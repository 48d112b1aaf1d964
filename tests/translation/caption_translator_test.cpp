// SPDX-License-Identifier: GPL-3.0-or-later
#include "translation/caption_translator.h"

#include "language/localization.h"
#include "support/scripted_translation_session.h"
#include "support/settle.h"
#include "support/suite.h"

#include <algorithm>
#include <QSignalSpy>

using namespace velun;
using test::ScriptedTranslationSession;
using test::settle;

namespace {

using Script = ScriptedTranslationSession::Script;

/// A translator over a list of lines, as the caption model has it, with all that it reports.
struct Bench {
  explicit Bench(const QStringList& texts = {}) {
    for (const QString& text : texts) addLine(text);
    translator->lines = [this]() -> const std::vector<Line>& {
      return lines;
    };
    translator->lineWithID = [this](const QUuid& id) {
      return find(id);
    };
    translator->onTranslation = [this](const QUuid& id, const QString& language,
                                       const QString& text) {
      reports.append(language + ": " + text);
      if (Line* const line = find(id)) line->translations[language] = text;
    };
    translator->onError = [this](const std::optional<QString>& message) {
      reports.append(message ? *message : "no error");
    };
  }

  Line* find(const QUuid& id) {
    const auto found =
        std::find_if(lines.begin(), lines.end(), [&id](const Line& line) { return line.id == id; });
    return found == lines.end() ? nullptr : &*found;
  }

  QUuid addLine(const QString& text, const QString& language = "en_US") {
    Line line;
    line.text = text;
    line.sourceLanguage = language;
    lines.push_back(line);
    return line.id;
  }

  /// Opens a session that the test answers, and runs with it.
  std::shared_ptr<Script> open() {
    auto script = std::make_shared<Script>();
    start(script);
    return script;
  }

  /// Opens a session that answers every text in upper case, and runs with it.
  std::shared_ptr<Script> openAnswering() {
    auto script = std::make_shared<Script>();
    script->translate = [script = script.get()](const QString& text) {
      script->requests.push_back({text, {}});
      return text.toUpper();
    };
    start(script);
    return script;
  }

  void start(const std::shared_ptr<Script>& script) {
    runs.push_back(translator->run(std::make_shared<ScriptedTranslationSession>(script)));
  }

  void configure(const QString& source = "en_US", const QString& target = "ko") {
    translator->configure(true, true, source, target);
  }

  std::vector<Line> lines;
  QStringList reports;
  std::unique_ptr<CaptionTranslator> translator = std::make_unique<CaptionTranslator>();
  std::vector<QCoro::Task<>> runs;
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

  void configurationNamesBothLanguages() {
    Bench bench;
    bench.configure("en_US", "ko");
    QCOMPARE(bench.translator->configuration()->source(), QString("en"));
    QCOMPARE(bench.translator->configuration()->target(), QString("ko"));
    bench.configure("zh_Hant_TW", "pt-BR");
    QCOMPARE(bench.translator->configuration()->source(), QString("zh-Hant"));
    QCOMPARE(bench.translator->configuration()->target(), QString("pt-BR"));
  }

  void nothingToTranslateMeansNoConfiguration_data() {
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<bool>("hasContent");
    QTest::addColumn<QString>("target");
    QTest::newRow("switched off") << false << true << "ko";
    QTest::newRow("no content") << true << false << "ko";
    QTest::newRow("same language") << true << true << "en";
  }
  void nothingToTranslateMeansNoConfiguration() {
    QFETCH(bool, enabled);
    QFETCH(bool, hasContent);
    QFETCH(QString, target);
    Bench bench;
    const QSignalSpy changes(bench.translator.get(), &CaptionTranslator::configurationChanged);
    bench.translator->configure(enabled, hasContent, "en_US", target);
    QVERIFY(!bench.translator->configuration());
    QCOMPARE(changes.count(), 0);
  }

  void everyConfigurationOfTheSameLanguagesDiffers() {
    Bench bench;
    const QSignalSpy changes(bench.translator.get(), &CaptionTranslator::configurationChanged);
    std::vector<TranslationConfiguration> configurations;
    for (int i = 0; i < 4; ++i) {
      bench.configure();
      configurations.push_back(*bench.translator->configuration());
      QCOMPARE(std::count(configurations.begin(), configurations.end(), configurations.back()), 1);
    }
    QCOMPARE(changes.count(), 4);
  }

  void theSameLanguagesAfterAPauseDifferFromBefore() {
    Bench bench;
    bench.configure();
    const TranslationConfiguration before = *bench.translator->configuration();
    bench.translator->configure(false, true, "en_US", "ko");
    bench.configure();
    QVERIFY(*bench.translator->configuration() != before);
  }

  void noneAfterNoneNotifiesNobody() {
    Bench bench;
    bench.configure();
    const QSignalSpy changes(bench.translator.get(), &CaptionTranslator::configurationChanged);
    bench.translator->configure(false, true, "en_US", "ko");
    bench.translator->configure(false, true, "en_US", "ko");
    QCOMPARE(changes.count(), 1);
  }

  void waitingLinesAreTranslatedInOrderOneAtATime() {
    Bench bench({"one", "two"});
    bench.configure();
    const auto script = bench.open();
    settle();
    QCOMPARE(script->requests.size(), std::size_t{1});
    script->requests[0].succeed("하나");
    settle();
    QCOMPARE(script->requests.size(), std::size_t{2});
    QCOMPARE(script->requests[1].text, QString("two"));
    script->requests[1].succeed("둘");
    settle();
    QCOMPARE(bench.reports, QStringList({"ko: 하나", "no error", "ko: 둘", "no error"}));
  }

  void newLinesJoinTheRun() {
    Bench bench;
    bench.configure();
    const auto script = bench.openAnswering();
    settle();
    bench.translator->enqueue(bench.addLine("one"));
    settle();
    bench.translator->enqueue(bench.addLine("two"));
    bench.translator->enqueue(bench.addLine("three"));
    settle();
    QCOMPARE(bench.reports,
             QStringList({"ko: ONE", "no error", "ko: TWO", "no error", "ko: THREE", "no error"}));
  }

  void aLineQueuedWithoutARunWaitsForTheNext() {
    Bench bench;
    bench.configure();
    bench.translator->enqueue(bench.addLine("one"));
    settle();
    QCOMPARE(bench.reports, QStringList());
    bench.openAnswering();
    settle();
    QCOMPARE(bench.reports, QStringList({"ko: ONE", "no error"}));
  }

  void aLineQueuedTwiceIsTranslatedOnce() {
    Bench bench({"one"});
    bench.configure();
    const auto script = bench.openAnswering();
    bench.translator->enqueue(bench.lines[0].id);
    settle();
    QCOMPARE(script->requests.size(), std::size_t{1});
  }

  void linesOfAnotherLanguageAreLeftAlone() {
    Bench bench;
    bench.addLine("bonjour", "fr_FR");
    bench.addLine("hello", "en_GB");
    bench.lines.emplace_back().text = "imported";
    bench.addLine("one");
    bench.configure();
    const auto script = bench.openAnswering();
    for (const Line& line : bench.lines) bench.translator->enqueue(line.id);
    settle();
    QCOMPARE(script->requests.size(), std::size_t{1});
    QCOMPARE(script->requests[0].text, QString("one"));
  }

  void anotherTargetTranslatesAgainAndKeepsBoth() {
    Bench bench({"one"});
    bench.configure();
    bench.openAnswering();
    settle();
    bench.configure("en_US", "fr");
    bench.openAnswering();
    settle();
    QCOMPARE(bench.lines[0].translations.size(), std::size_t{2});
    QCOMPARE(bench.reports, QStringList({"ko: ONE", "no error", "fr: ONE", "no error"}));
  }

  void aFailureIsReportedAndTheNextLineGoesOn() {
    Bench bench({"one", "two"});
    bench.configure();
    const auto script = bench.open();
    settle();
    script->requests[0].fail("the model is broken");
    settle();
    script->requests[1].succeed("둘");
    settle();
    QCOMPARE(bench.reports,
             QStringList({"Translation error: the model is broken", "ko: 둘", "no error"}));
    QCOMPARE(script->requests.size(), std::size_t{2});
  }

  void errorsAreWordedInTheInterfaceLanguage() {
    Bench bench({"one"});
    bench.configure();
    const auto script = bench.open();
    settle();
    Localization::shared().setLanguage(AppLanguage::korean);
    script->requests[0].fail("모델이 없습니다");
    settle();
    QCOMPARE(bench.reports, QStringList({"번역 오류: 모델이 없습니다"}));
  }

  void aLineThatWentAwayIsSkipped() {
    Bench bench({"one", "two", "three"});
    bench.configure();
    const auto script = bench.open();
    settle();
    bench.lines.erase(bench.lines.begin() + 1);
    script->requests[0].succeed("하나");
    settle();
    QCOMPARE(script->requests[1].text, QString("three"));
  }

  void whatArrivesAfterConfigureIsDropped_data() {
    QTest::addColumn<bool>("fails");
    QTest::addColumn<bool>("stillEnabled");
    QTest::newRow("translation, reconfigured") << false << true;
    QTest::newRow("translation, switched off") << false << false;
    QTest::newRow("failure, reconfigured") << true << true;
    QTest::newRow("failure, switched off") << true << false;
  }
  void whatArrivesAfterConfigureIsDropped() {
    QFETCH(bool, fails);
    QFETCH(bool, stillEnabled);
    Bench bench({"one", "two"});
    bench.configure();
    auto script = std::make_shared<Script>();
    script->cancelsAtEnd = false;
    bench.start(script);
    settle();
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
  }

  void anEndedRunLetsItsSessionGo() {
    Bench bench({"one"});
    bench.configure();
    const auto script = bench.open();
    settle();
    QVERIFY(script->isOpen);
    bench.configure();
    settle();
    QVERIFY(!script->isOpen);
    QVERIFY(bench.runs[0].isReady());
    QCOMPARE(bench.reports, QStringList());
  }

  void aSecondRunTakesOverFromTheFirst() {
    Bench bench({"one"});
    bench.configure();
    const auto first = bench.open();
    settle();
    const auto second = bench.open();
    settle();
    QVERIFY(!first->isOpen);
    QVERIFY(bench.runs[0].isReady());
    second->requests[0].succeed("하나");
    settle();
    QCOMPARE(bench.reports, QStringList({"ko: 하나", "no error"}));
  }

  void aRunWithoutConfigurationEndsAtItsFirstLine() {
    Bench bench({"one"});
    bench.translator->configure(false, true, "en_US", "ko");
    const auto script = bench.open();
    settle();
    QVERIFY(script->requests.empty());
    QVERIFY(bench.runs[0].isReady());
  }

  void configureFromInsideAnAnswerIsSafe() {
    Bench bench({"one", "two"});
    bench.configure();
    const auto record = bench.translator->onTranslation;
    bench.translator->onTranslation = [&bench, record](const QUuid& id, const QString& language,
                                                       const QString& text) {
      record(id, language, text);
      bench.configure();
    };
    const auto script = bench.openAnswering();
    settle();
    QCOMPARE(script->requests.size(), std::size_t{1});
    QVERIFY(bench.runs[0].isReady());
  }

  void nothingIsReportedAfterDestruction() {
    Bench bench({"one"});
    bench.configure();
    auto script = std::make_shared<Script>();
    script->cancelsAtEnd = false;
    bench.start(script);
    settle();
    bench.translator.reset();
    script->requests[0].succeed("late");
    settle();
    QCOMPARE(bench.reports, QStringList());
    QVERIFY(bench.runs[0].isReady());
  }

  void anIdleRunEndsWithItsTranslator() {
    Bench bench;
    bench.configure();
    bench.open();
    settle();
    QVERIFY(!bench.runs[0].isReady());
    bench.translator.reset();
    settle();
    QVERIFY(bench.runs[0].isReady());
  }
};

QTEST_GUILESS_MAIN(CaptionTranslatorTest)
#include "caption_translator_test.moc"
