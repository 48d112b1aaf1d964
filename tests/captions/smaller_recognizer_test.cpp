// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/smaller_recognizer.h"

#include "platform/speech/recognizer_preferences.h"
#include "settings/app_settings.h"
#include "support/scripted_speech_platform.h"
#include "support/suite.h"

#include <QSignalSpy>

using namespace velun;

namespace {

RecognizerCandidate candidate(const QString& id, std::int64_t bytes, bool isInstalled) {
  RecognizerCandidate made;
  made.id = id;
  made.title = id.toUpper();
  made.modelBytes = bytes;
  made.isInstalled = isInstalled;
  return made;
}

/// A large recognizer is used, and the machine is too slow for it.
struct Fixture {
  explicit Fixture(const std::vector<RecognizerCandidate>& others) {
    speech.script->candidates = {candidate("huge", 900, false), candidate("used", 600, true)};
    for (const RecognizerCandidate& each : others) speech.script->candidates.push_back(each);
    smaller.begin();
    smaller.find();
  }

  test::ScriptedSpeechPlatform speech;
  RecognizerPreferences preferences;
  AppSettings settings;
  SmallerRecognizer smaller{speech, preferences, settings};
};

}  // namespace

class SmallerRecognizerTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void installedOneIsChosen() {
    Fixture f({candidate("absent", 70, false), candidate("present", 130, true)});
    const SmallerRecognizer::Offer expected{"en_US", "present", "PRESENT", true};
    QCOMPARE(f.smaller.offer(), std::optional(expected));
    const QSignalSpy changed(&f.smaller, &SmallerRecognizer::changed);
    f.smaller.accept();
    QCOMPARE(f.preferences.choice("en_US"), QString("present"));
    QVERIFY(!f.smaller.offer());
    QCOMPARE(changed.count(), 1);
  }

  void orderThatChangedMeanwhileDoesNotMatter() {
    Fixture f({candidate("present", 130, true), candidate("tiny", 60, true)});
    f.smaller.withdraw();
    std::swap(f.speech.script->candidates[1], f.speech.script->candidates[2]);
    f.smaller.find();
    QCOMPARE(f.smaller.offer()->recognizer, QString("present"));
  }

  void missingOneIsNotChosen() {
    Fixture f({candidate("absent", 70, false)});
    QCOMPARE(f.smaller.offer()->recognizer, QString("absent"));
    QVERIFY(!f.smaller.offer()->isInstalled);
    f.smaller.accept();
    QVERIFY(f.preferences.choice("en_US").isEmpty());
    QVERIFY(!f.smaller.offer());
  }

  void nothingIsOfferedIfNothingIsSmaller() {
    Fixture f({candidate("larger", 700, true)});
    QVERIFY(!f.smaller.offer());
    f.smaller.accept();
    QVERIFY(f.preferences.choice("en_US").isEmpty());
  }

  void anotherLanguageAndAnotherChoiceWithdrawTheOffer() {
    Fixture f({candidate("present", 130, true)});
    f.settings.setLocaleID("ko_KR");
    QVERIFY(!f.smaller.offer());
    f.smaller.find();
    QVERIFY(f.smaller.offer());
    f.preferences.setChoice("ko_KR", "present");
    QVERIFY(!f.smaller.offer());
  }
};

QTEST_GUILESS_MAIN(SmallerRecognizerTest)
#include "smaller_recognizer_test.moc"
