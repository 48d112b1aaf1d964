// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/session_titler.h"

#include "captions/model_fixture.h"
#include "settings/library_settings.h"
#include "support/memory_preferences.h"
#include "support/saved_sessions.h"
#include "support/suite.h"

using namespace velun;

class SessionTitlerTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void theFirstSentenceIsTheTitleIfTheUserWantsIt() {
    test::ModelFixture f([](AppSettings& settings) { settings.setAutoSaveSessions(true); });
    test::MemoryPreferences store;
    LibrarySettings settings(&store);
    const SessionTitler titler(*f.model, settings);
    f.start();
    f.final("Hello.");
    QCOMPARE(f.model->session().title, defaultSessionTitle());
    f.stop();
    f.model->newSession();
    settings.setTitlesFromFirstSentence(true);
    QVERIFY(LibrarySettings(&store).titlesFromFirstSentence());
    f.start();
    f.final("Good morning. And more.");
    QCOMPARE(f.model->session().title, "Good morning.");
    QCOMPARE(test::readSession(*f.model->savedURL()).title, "Good morning.");
    f.final("Later.");
    QCOMPARE(f.model->session().title, "Good morning.");
    f.stop();
    f.settleSaving();
  }

  void aTitleThatTheUserGaveIsKept() {
    test::ModelFixture f;
    LibrarySettings settings;
    settings.setTitlesFromFirstSentence(true);
    const SessionTitler titler(*f.model, settings);
    f.model->setTitle(" Biology ");
    f.start();
    f.final("Good morning.");
    QCOMPARE(f.model->session().title, "Biology");
  }

  void aTitleGivenWhileCaptionsRunIsSaved() {
    test::ModelFixture f([](AppSettings& settings) { settings.setAutoSaveSessions(true); });
    f.start();
    f.final("One.");
    f.takeSignals();
    f.model->setTitle("Biology");
    QCOMPARE(f.takeSignals(), QStringList({"session"}));
    QCOMPARE(test::readSession(*f.model->savedURL()).title, "Biology");
    f.final("Two.");
    const CaptionSession saved = test::readSession(*f.model->savedURL());
    QCOMPARE(saved.title, "Biology");
    QCOMPARE(saved.lines.size(), std::size_t(2));
    f.model->setTitle("");
    QCOMPARE(f.model->session().title, defaultSessionTitle());
    f.stop();
    f.settleSaving();
  }
};

QTEST_GUILESS_MAIN(SessionTitlerTest)
#include "session_titler_test.moc"
