// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/caption_arguments.h"

#include "language/localization.h"
#include "support/suite.h"

using namespace velun;

namespace {

CaptionArguments parsed(const QString& arguments) {
  return parseCaptionArguments(arguments.split(u' ', Qt::SkipEmptyParts));
}

QString refusal(const QString& arguments) {
  try {
    parsed(arguments);
  } catch (const UsageError& error) {
    return QString::fromStdString(error.what());
  }
  return {};
}

}  // namespace

class CaptionArgumentsTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void withoutArgumentsTheComputerIsCaptionedAsText() {
    const CaptionArguments arguments = parsed({});
    QVERIFY(!arguments.recording);
    QCOMPARE(arguments.input, InputChoice::computer);
    QCOMPARE(arguments.output, CaptionOutput::text);
    QVERIFY(arguments.localeID.isEmpty() && arguments.model.isEmpty());
    QVERIFY(!arguments.showsDrafts && !arguments.showsTimes && !arguments.listsModels);
  }

  void everyOptionIsRead() {
    const CaptionArguments live = parsed(
        "--input microphone -d usb-mic -l ko_KR --model zipformer-ko --format json --drafts -t en");
    QCOMPARE(live.input, InputChoice::microphone);
    QCOMPARE(live.device, QString("usb-mic"));
    QCOMPARE(live.localeID, QString("ko_KR"));
    QCOMPARE(live.model, QString("zipformer-ko"));
    QCOMPARE(live.output, CaptionOutput::json);
    QVERIFY(live.showsDrafts);
    QCOMPARE(live.target, QString("en"));
    QCOMPARE(parsed("talk.mp3 -f srt").recording, std::optional(QString("talk.mp3")));
    QCOMPARE(parsed("-f vtt -").recording, std::optional(QString("-")));
    QVERIFY(parsed("--times a.wav").showsTimes);
    QCOMPARE(parsed("-- -talk.mp3").recording, std::optional(QString("-talk.mp3")));
    QVERIFY(parsed("--list-models").listsModels);
    using Scope = ProgramChoice::Scope;
    QCOMPARE(parsed("-p Firefox").program, (ProgramChoice{Scope::only, "Firefox"}));
    QCOMPARE(parsed("--except Music").program, (ProgramChoice{Scope::allBut, "Music"}));
  }

  void refusesWhatMakesNoSense_data() {
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("text");
    QTest::newRow("an unknown option") << "--loud"
                                       << "Unknown option 'loud'.";
    QTest::newRow("a missing value") << "--format"
                                     << "Missing value after '--format'.";
    QTest::newRow("an unknown format")
        << "-f doc"
        << "“doc” is not a value of --format; it can be text, srt, vtt, json.";
    QTest::newRow("an unknown input")
        << "-i radio"
        << "“radio” is not a value of --input; it can be computer, microphone, both.";
    QTest::newRow("two recordings") << "a.mp3 b.mp3"
                                    << "Only one recording can be captioned at a time.";
    QTest::newRow("a recording and an input")
        << "a.mp3 -i computer"
        << "Either a recording or --input can be captioned, not both.";
    QTest::newRow("times of subtitles")
        << "--times -f srt"
        << "--times is for the format text; the others always have times.";
    QTest::newRow("drafts of subtitles")
        << "--drafts -f vtt"
        << "Subtitles have no drafts; use --drafts with the format text or json.";
  }
  void refusesWhatMakesNoSense() {
    QFETCH(QString, arguments);
    QTEST(refusal(arguments), "text");
  }

  void helpNamesEveryOptionInBothLanguages() {
    for (const AppLanguage language : {AppLanguage::english, AppLanguage::korean}) {
      Localization::shared().setLanguage(language);
      try {
        parsed("--help");
        QFAIL("no help");
      } catch (const HelpRequested& help) {
        QVERIFY(help.text.startsWith(L("Usage: velun captions [options] [recording]\n",
                                       "사용법: velun captions [옵션] [녹음 파일]\n")));
        for (const QString option :
             {"--input", "--language", "--model", "--format", "--translate", "--times", "--drafts",
              "--device", "--list-devices", "--list-models", "--help"}) {
          QVERIFY2(help.text.contains(option), qPrintable(option));
        }
      }
    }
  }
};

QTEST_GUILESS_MAIN(CaptionArgumentsTest)
#include "caption_arguments_test.moc"
