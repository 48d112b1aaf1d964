// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/model_fixture.h"
#include "language/localization.h"
#include "model/session_file/session_file.h"
#include "support/saved_sessions.h"
#include "support/suite.h"

using namespace velun;
using namespace std::chrono_literals;
using test::ModelFixture;
using test::settle;

namespace {

void autoSaving(AppSettings& settings) {
  settings.setAutoSaveSessions(true);
}

bool isWritten(const ModelFixture& fixture) {
  return fixture.model->savedURL() &&
         test::contentsOf(*fixture.model->savedURL()) == encodeSession(fixture.model->session());
}

}  // namespace

class CaptionSavingTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void nothingIsWrittenUntilTheSessionIsSaved() {
    ModelFixture fixture;
    fixture.start();
    fixture.final("One.");
    QCOMPARE(fixture.files(), QStringList());
    QVERIFY(fixture.model->hasUnsavedSession());
    QVERIFY(fixture.model->saveCurrentSession());
    QVERIFY(isWritten(fixture));
    QVERIFY(!fixture.model->hasUnsavedSession());
    fixture.final("Two. Three.");
    QVERIFY(isWritten(fixture));
    QCOMPARE(fixture.files().size(), 1);
  }

  void anAutoSavedSessionIsWrittenFromItsFirstLine() {
    ModelFixture fixture(autoSaving);
    QVERIFY(fixture.model->isSavingSession());
    fixture.start();
    fixture.draft("on");
    QCOMPARE(fixture.files(), QStringList());
    fixture.final("One.");
    QVERIFY(isWritten(fixture));
  }

  void everyTranslationIsWritten() {
    ModelFixture fixture([](AppSettings& settings) {
      settings.setAutoSaveSessions(true);
      settings.setTranslate(true);
    });
    fixture.translateToUpperCase();
    fixture.start();
    fixture.final("One. Two.");
    settle();
    QCOMPARE(fixture.translationOf(1), QString("TWO."));
    QVERIFY(isWritten(fixture));
  }

  void stoppingWritesTheEnd() {
    ModelFixture fixture(autoSaving);
    fixture.start();
    fixture.final("One.");
    fixture.clock.advance(5s);
    fixture.stop();
    QVERIFY(isWritten(fixture));
    QCOMPARE(test::readSession(*fixture.model->savedURL()).endedAt,
             std::optional(std::chrono::floor<std::chrono::seconds>(fixture.clock.now())));
  }

  void theFileIsWrittenOncePerResult() {
    ModelFixture fixture(autoSaving);
    fixture.start();
    fixture.final("One.");
    fixture.breakStore();
    fixture.takeSignals();
    fixture.final("Two. Three. Four.");
    QCOMPARE(fixture.takeSignals().count("saveError"), 1);
  }

  void turningAutoSaveOnAppliesToTheNextSession() {
    ModelFixture fixture;
    fixture.final("One.");
    fixture.settings.setAutoSaveSessions(true);
    fixture.final("Two.");
    QVERIFY(!fixture.model->isSavingSession());
    QCOMPARE(fixture.files(), QStringList());
    fixture.model->newSession();
    QVERIFY(fixture.model->isSavingSession());
    fixture.final("Three.");
    QCOMPARE(fixture.files().size(), 1);
  }

  void turningAutoSaveOffAppliesToTheNextSession() {
    ModelFixture fixture(autoSaving);
    fixture.settings.setAutoSaveSessions(false);
    fixture.final("One.");
    QVERIFY(isWritten(fixture));
    fixture.model->newSession();
    QVERIFY(!fixture.model->isSavingSession());
  }

  void aDeletedFileIsNotWrittenAgain() {
    ModelFixture fixture(autoSaving);
    fixture.final("One.");
    const QUrl url = *fixture.model->savedURL();
    QVERIFY(QFile::remove(url.toLocalFile()));
    fixture.takeSignals();
    fixture.model->savedFileWasDeleted(url);
    QCOMPARE(fixture.takeSignals(), QStringList({"savedURL", "isSavingSession"}));
    fixture.final("Two.");
    QCOMPARE(fixture.files(), QStringList());
    QVERIFY(fixture.model->hasUnsavedSession());
    QVERIFY(fixture.model->saveCurrentSession());
    QVERIFY(isWritten(fixture));
  }

  void aFailedWriteDoesNotStopCaptions() {
    ModelFixture fixture(autoSaving);
    fixture.start();
    fixture.breakStore();
    fixture.final("One.");
    QVERIFY(fixture.model->saveError());
    QVERIFY(fixture.model->saveError()->startsWith("Couldn’t save the session: "));
    QVERIFY(fixture.model->saveError()->size() > 30);
    QVERIFY(!fixture.model->savedURL());
    QVERIFY(!fixture.model->status());
    QVERIFY(fixture.model->hasUnsavedSession());
    QVERIFY(fixture.model->isRunning());
    QVERIFY(!fixture.model->persistIfNeeded());
    fixture.repairStore();
    fixture.final("Two.");
    QVERIFY(!fixture.model->saveError());
    QVERIFY(isWritten(fixture));
    QVERIFY(!fixture.model->hasUnsavedSession());
  }

  void startingAgainRemovesTheEndFromTheFile() {
    ModelFixture fixture(autoSaving);
    fixture.start();
    fixture.final("One.");
    fixture.stop();
    fixture.start();
    fixture.final("Two.");
    QVERIFY(isWritten(fixture));
    QVERIFY(!test::readSession(*fixture.model->savedURL()).endedAt);
  }

  void everySessionHasItsOwnFile() {
    ModelFixture fixture(autoSaving);
    fixture.final("One.");
    fixture.model->newSession();
    fixture.final("Two.");
    QCOMPARE(fixture.files().size(), 2);
    QVERIFY(isWritten(fixture));
  }
};

QTEST_GUILESS_MAIN(CaptionSavingTest)
#include "caption_saving_test.moc"
