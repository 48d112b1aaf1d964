// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/model_fixture.h"
#include "language/localization.h"
#include "model/session_file/session_file.h"
#include "support/suite.h"

using namespace velun;
using namespace std::chrono_literals;
using test::ModelFixture;

namespace {

constexpr auto kComputer = AudioInput::computer;
constexpr auto kMicrophone = AudioInput::microphone;

/// Captions of both inputs, from a session's start on.
struct Both : ModelFixture {
  Both() : ModelFixture([](AppSettings& s) { s.setInputChoice(InputChoice::both); }) {
    start();
    begin = clock.now();
    takeSignals();
  }

  void say(AudioInput input, const QString& text, std::chrono::milliseconds from,
           std::chrono::milliseconds to) {
    FinalEvent event{text, "en_US", input};
    event.spoken = {begin + from, begin + to};
    recognizer->emitEvent(event);
  }
  void draft(AudioInput input, const QString& text) {
    recognizer->emitEvent(DraftEvent{text, input});
  }

  Instant begin;
};

}  // namespace

/// Lines and drafts while the computer and the microphone are captioned at once.
class BothInputsTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void theEngineGetsBothTargets() {
    const Both both;
    QVERIFY(both.engine->calls.contains("start en_US computer microphone"));
  }

  void draftsOfBothAreOpenAtOnce() {
    Both both;
    both.draft(kComputer, "how are");
    both.draft(kMicrophone, "fine");
    both.draft(kComputer, "how are you");
    QCOMPARE(both.model->volatileText(), QString("how are you\nfine"));
    QCOMPARE(both.model->drafts().size(), 2U);
    both.say(kComputer, "How are you?", 0s, 1s);
    QCOMPARE(both.model->volatileText(), QString("fine"));
    QCOMPARE(both.model->drafts().front().input, kMicrophone);
    both.draft(kMicrophone, "");
    QVERIFY(both.model->drafts().empty());
  }

  void lineGoesToItsPlaceByTimeOfSpeech() {
    Both both;
    QList<int> inserted;
    QObject::connect(both.model.get(), &CaptionViewModel::lineInserted, both.model.get(),
                     [&inserted](int index) { inserted += index; });
    both.say(kComputer, "First.", 0s, 1s);
    both.say(kComputer, "Third.", 3s, 4s);
    both.say(kMicrophone, "Second.", 2s, 5s);
    both.say(kComputer, "Fourth.", 5s, 6s);
    QCOMPARE(both.texts(), QStringList({"First.", "Second.", "Third.", "Fourth."}));
    QCOMPARE(inserted, QList<int>({1}));
    QCOMPARE(both.model->lines()[1].input, std::optional(kMicrophone));
  }

  void lineWithoutTimesStaysAtTheEnd() {
    Both both;
    both.say(kComputer, "First.", 3s, 4s);
    both.final("Second.", "en_US", kMicrophone);
    QCOMPARE(both.texts(), QStringList({"First.", "Second."}));
  }

  void lineStaysAfterThoseOfAnEarlierRun() {
    Both both;
    both.say(kComputer, "First.", 3s, 4s);
    both.stop();
    both.start();
    both.say(kMicrophone, "Second.", 2s, 3s);
    QCOMPARE(both.texts(), QStringList({"First.", "Second."}));
  }

  void savedFileHasTheLinesInOrder() {
    Both both;
    both.say(kComputer, "First.", 0s, 1s);
    QVERIFY(both.model->saveCurrentSession());
    both.say(kComputer, "Third.", 3s, 4s);
    both.say(kMicrophone, "Second.", 2s, 5s);
    both.model->setTitle("Talk");
    both.settleSaving();
    QFile file(both.model->savedURL()->toLocalFile());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), encodeSession(both.model->session()));
  }

  void insertedLineIsTranslated() {
    Both both;
    both.translateToUpperCase();
    both.settings.setTranslate(true);
    both.say(kComputer, "First.", 3s, 4s);
    test::settle();
    both.say(kMicrophone, "Second.", 2s, 5s);
    test::settle();
    for (const Line& line : both.model->lines()) {
      QVERIFY2(line.translations.contains("ko"), qPrintable(line.text));
    }
  }

  void sessionNamesItsInputs() {
    Both both;
    QCOMPARE(both.model->session().computerName, std::optional<QString>("Computer"));
    QCOMPARE(both.model->session().microphoneName, std::optional<QString>("Me"));
    both.settings.setInputLabel(kMicrophone, {"Ana", Qt::cyan});
    both.say(kMicrophone, "Hello.", 0s, 1s);
    QCOMPARE(both.model->captionText(), QString("Ana: Hello."));
  }

  void sessionOfOneInputHasNoNames() {
    ModelFixture fixture;
    fixture.start();
    fixture.final("Hello.");
    QVERIFY(!fixture.model->session().computerName && !fixture.model->session().microphoneName);
    QVERIFY(!encodeSession(fixture.model->session()).contains("Name"));
  }

  void defaultDeviceIsTakenForTheMissingOne() {
    Both both;
    both.settings.setOutput({"hall", "Hall"});
    both.settings.setMicrophone({"desk", "Desk"});
    test::settle();
    both.recognizer->setMissing(kMicrophone);
    both.model->useDefaultDevice();
    QCOMPARE(both.settings.output().id, QString("hall"));
    QCOMPARE(both.settings.microphone().id, QString());
  }
};

QTEST_GUILESS_MAIN(BothInputsTest)
#include "both_inputs_test.moc"
