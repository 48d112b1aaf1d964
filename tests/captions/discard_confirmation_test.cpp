// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/discard_confirmation.h"

#include "captions/model_fixture.h"
#include "language/localization.h"
#include "support/scripted_question.h"
#include "support/suite.h"

using namespace velun;
using test::ModelFixture;
using test::ScriptedQuestion;

class DiscardConfirmationTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void asksOnlyAboutUnsavedLines_data() {
    QTest::addColumn<bool>("saved");
    QTest::newRow("empty") << false;
    QTest::newRow("saved") << true;
  }
  void asksOnlyAboutUnsavedLines() {
    QFETCH(bool, saved);
    ModelFixture fixture;
    if (saved) {
      fixture.final("One.");
      QVERIFY(fixture.model->saveCurrentSession());
    }
    ScriptedQuestion question;
    QVERIFY(confirmDiscarding(*fixture.model, "Save?", question));
    QVERIFY(question.asked.empty());
  }

  void askingCanBeSwitchedOff() {
    ModelFixture fixture([](AppSettings& settings) { settings.setAskBeforeDiscarding(false); });
    fixture.final("One.");
    ScriptedQuestion question;
    QVERIFY(confirmDiscarding(*fixture.model, "Save?", question));
    QVERIFY(question.asked.empty());
  }

  void asksAfterAFailedWriteEvenIfAskingIsOff() {
    ModelFixture fixture([](AppSettings& settings) {
      settings.setAskBeforeDiscarding(false);
      settings.setAutoSaveSessions(true);
    });
    fixture.final("One. Two.");
    fixture.breakStore();
    fixture.final("Three.");
    ScriptedQuestion question;
    QVERIFY(!confirmDiscarding(*fixture.model, "Save?", question));
    QCOMPARE(question.asked.size(), std::size_t{1});
    QVERIFY(question.asked[0].informativeText.startsWith("The 3 sentences"));
  }

  void asksWithTheNumberOfSentences() {
    ModelFixture fixture;
    fixture.final("One. Two.");
    ScriptedQuestion question;
    confirmDiscarding(*fixture.model, "Save this session before quitting?", question);
    Question expected;
    expected.message = "Save this session before quitting?";
    expected.informativeText =
        "The 2 sentences in this session haven’t been saved. If you don’t save, they’ll be lost.";
    expected.buttons = {"Save Session", "Don’t Save", "Cancel"};
    expected.isWarning = true;
    QCOMPARE(question.asked, std::vector<Question>({expected}));
  }

  void asksAboutOneSentenceInTheSingular() {
    ModelFixture fixture;
    fixture.final("One.");
    ScriptedQuestion question;
    confirmDiscarding(*fixture.model, "Save?", question);
    QCOMPARE(
        question.asked[0].informativeText,
        QString("The 1 sentence in this session hasn’t been saved. If you don’t save, it’ll be "
                "lost."));
  }

  void theQuestionIsLocalized() {
    ModelFixture fixture;
    Localization::shared().setLanguage(AppLanguage::korean);
    fixture.final("One. Two.");
    ScriptedQuestion question;
    confirmDiscarding(*fixture.model, "종료하기 전에 이 세션을 저장할까요?", question);
    Question expected;
    expected.message = "종료하기 전에 이 세션을 저장할까요?";
    expected.informativeText =
        "현재 세션의 2문장은 아직 저장되지 않았습니다. 저장하지 않으면 이 기록은 사라집니다.";
    expected.buttons = {"세션 저장", "저장하지 않음", "취소"};
    expected.isWarning = true;
    QCOMPARE(question.asked, std::vector<Question>({expected}));
  }

  void saveWritesTheFileAndGoesOn() {
    ModelFixture fixture;
    fixture.final("One.");
    ScriptedQuestion question;
    question.answers = {0};
    QVERIFY(confirmDiscarding(*fixture.model, "Save?", question));
    QVERIFY(fixture.model->savedURL());
    QCOMPARE(fixture.files().size(), 1);
  }

  void aFailedSaveIsReportedAndCancels() {
    ModelFixture fixture;
    fixture.final("One.");
    fixture.breakStore();
    ScriptedQuestion question;
    question.answers = {0, 0};
    QVERIFY(!confirmDiscarding(*fixture.model, "Save?", question));
    QCOMPARE(question.asked.size(), std::size_t{2});
    QCOMPARE(question.asked[1].message, QString("Couldn’t Complete the Action"));
    QCOMPARE(question.asked[1].informativeText, *fixture.model->saveError());
    QCOMPARE(question.asked[1].buttons.size(), 1);
  }

  void savingASessionThatBecameEmptyIsReported() {
    ModelFixture fixture;
    fixture.final("One.");
    struct Emptying final : ModalQuestion {
      std::optional<int> ask(const Question& question) override {
        asked.push_back(question);
        model->newSession();
        return 0;
      }
      CaptionViewModel* model = nullptr;
      std::vector<Question> asked;
    } question;
    question.model = fixture.model.get();
    Localization::shared().setLanguage(AppLanguage::korean);
    QVERIFY(!confirmDiscarding(*fixture.model, "Save?", question));
    QCOMPARE(question.asked[1].message, QString("작업을 완료하지 못했습니다"));
    QCOMPARE(question.asked[1].informativeText, QString("세션을 저장하지 못했습니다."));
  }

  void dontSaveGoesOnWithoutAFile() {
    ModelFixture fixture;
    fixture.final("One.");
    ScriptedQuestion question;
    question.answers = {1};
    QVERIFY(confirmDiscarding(*fixture.model, "Save?", question));
    QCOMPARE(fixture.files(), QStringList());
    QVERIFY(!fixture.model->isSavingSession());
  }

  void otherAnswersCancel_data() {
    QTest::addColumn<std::optional<int>>("answer");
    QTest::newRow("cancelled") << std::optional(2);
    QTest::newRow("closed") << std::optional<int>();
  }
  void otherAnswersCancel() {
    QFETCH(std::optional<int>, answer);
    ModelFixture fixture;
    fixture.final("One.");
    ScriptedQuestion question;
    question.answers = {answer};
    QVERIFY(!confirmDiscarding(*fixture.model, "Save?", question));
    QCOMPARE(fixture.files(), QStringList());
    QCOMPARE(question.asked.size(), std::size_t{1});
  }
};

QTEST_GUILESS_MAIN(DiscardConfirmationTest)
#include "discard_confirmation_test.moc"
