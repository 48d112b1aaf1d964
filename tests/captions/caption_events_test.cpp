// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/model_fixture.h"
#include "language/localization.h"
#include "support/suite.h"

using namespace velun;
using namespace std::chrono_literals;
using test::ModelFixture;
using test::settle;

namespace {

void translating(AppSettings& settings) {
  settings.setTranslate(true);
}

void translationOnly(AppSettings& settings) {
  settings.setTranslate(true);
  settings.setShowTranslationOnly(true);
}

}  // namespace

class CaptionEventsTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void anUnchangedDraftIsNotAnnouncedAgain() {
    ModelFixture fixture;
    fixture.draft("he");
    fixture.draft("he");
    QCOMPARE(fixture.model->volatileText(), QString("he"));
    QCOMPARE(fixture.takeSignals(), QStringList({"volatileText"}));
    fixture.draft("");
    QCOMPARE(fixture.model->volatileText(), QString());
    QVERIFY(fixture.model->lines().empty());
  }

  void everySentenceBecomesALine() {
    ModelFixture fixture;
    fixture.start();
    fixture.clock.advance(3s);
    fixture.draft("one two");
    fixture.takeSignals();
    fixture.final(" One.  Two? ", "en_GB", AudioInput::microphone);
    QCOMPARE(fixture.texts(), QStringList({"One.", "Two?"}));
    QVERIFY(fixture.model->lines()[0].id != fixture.model->lines()[1].id);
    for (const Line& line : fixture.model->lines()) {
      QCOMPARE(line.time, std::optional(fixture.clock.now()));
      QCOMPARE(line.sourceLanguage, std::optional<QString>("en_GB"));
      QCOMPARE(line.input, std::optional(AudioInput::microphone));
      QVERIFY(line.translations.empty() && !line.legacyTimestamp && !line.legacyTranslation);
    }
    QCOMPARE(fixture.takeSignals(), QStringList({"volatileText", "session"}));
    fixture.final("Three.");
    QCOMPARE(fixture.takeSignals(), QStringList({"session"}));
  }

  void repeatedTextsAreKept() {
    ModelFixture fixture;
    fixture.final("Yes.");
    fixture.final("Yes.");
    QCOMPARE(fixture.texts(), QStringList({"Yes.", "Yes."}));
  }

  void aBlankResultClearsTheDraftAndSavesAgain() {
    ModelFixture fixture;
    fixture.final("One.");
    fixture.breakStore();
    fixture.model->saveCurrentSession();
    fixture.repairStore();
    fixture.draft("tw");
    fixture.takeSignals();
    fixture.final(" \n\t ");
    QCOMPARE(fixture.texts(), QStringList({"One."}));
    QCOMPARE(fixture.takeSignals(), QStringList({"volatileText", "savedURL", "saveError"}));
  }

  void aBlankResultInAnEmptySessionWritesNoFile() {
    ModelFixture fixture([](AppSettings& settings) { settings.setAutoSaveSessions(true); });
    fixture.final("  ");
    QVERIFY(!fixture.model->savedURL() && !fixture.model->saveError());
    QVERIFY(!QDir(fixture.store.directory.toLocalFile()).exists());
  }

  void linesReachTheTranslatorInOrder() {
    ModelFixture fixture(translating);
    fixture.start();
    fixture.final("One. Two.");
    settle();
    const auto& requests = fixture.translationScript().requests;
    QCOMPARE(requests[0].text, QString("One."));
    requests[0].succeed("하나.");
    settle();
    QCOMPARE(requests[1].text, QString("Two."));
    QCOMPARE(fixture.translationOf(0), QString("하나."));
    QVERIFY(fixture.model->lines()[1].translations.empty());
  }

  void aTranslationBelongsToItsLineAlone() {
    ModelFixture fixture(translating);
    fixture.final("One. Two. Three.");
    const QUuid second = fixture.model->lines()[1].id;
    fixture.takeSignals();
    Q_EMIT fixture.model->translator().translated(second, "ko", "둘.");
    QCOMPARE(fixture.takeSignals(), QStringList({"translation 1", "session"}));
    Q_EMIT fixture.model->translator().translated(second, "ko", "두울.");
    Q_EMIT fixture.model->translator().translated(second, "ja", "二。");
    QVERIFY(fixture.model->lines()[0].translations.empty());
    QVERIFY(fixture.model->lines()[2].translations.empty());
    QCOMPARE(fixture.model->lines()[1].translations,
             Translations({{"ja", "二。"}, {"ko", "두울."}}));
  }

  void aTranslationOfAnUnknownLineIsIgnored() {
    ModelFixture fixture(translating);
    fixture.final("One.");
    const QUuid gone = fixture.model->lines()[0].id;
    fixture.model->newSession();
    fixture.final("Other.");
    fixture.takeSignals();
    Q_EMIT fixture.model->translator().translated(gone, "ko", "하나.");
    QCOMPARE(fixture.takeSignals(), QStringList());
    QVERIFY(fixture.model->lines()[0].translations.empty());
  }

  void statusTextsPassThrough() {
    ModelFixture fixture;
    fixture.status(QString("Downloading speech model…"));
    fixture.status(QString("Downloading speech model…"));
    QCOMPARE(fixture.model->status(), std::optional<QString>("Downloading speech model…"));
    fixture.status(std::nullopt);
    QVERIFY(!fixture.model->status());
    QCOMPARE(fixture.takeSignals(), QStringList({"status", "status"}));
  }

  void translationErrorsAreShownUntilTheNextSuccess() {
    ModelFixture fixture(translating);
    fixture.start();
    fixture.final("One. Two. Three.");
    settle();
    const auto& requests = fixture.translationScript().requests;
    requests[0].fail("out of memory");
    settle();
    QCOMPARE(fixture.model->translationStatus(),
             std::optional<QString>("Translation error: out of memory"));
    requests[1].succeed("둘.");
    settle();
    QVERIFY(!fixture.model->translationStatus());
    requests[2].fail("again");
    settle();
    QVERIFY(fixture.model->translationStatus());
    fixture.settings.setTargetID("ja");
    QVERIFY(!fixture.model->translationStatus());
  }

  void settingsDecideWhichTextsAreShown_data() {
    QTest::addColumn<bool>("translate");
    QTest::addColumn<bool>("only");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("content");
    QTest::addColumn<bool>("notice");
    QTest::newRow("off") << false << false << "ko"
                         << "Original Only" << false;
    QTest::newRow("off, only") << false << true << "ko"
                               << "Original Only" << false;
    QTest::newRow("off, same") << false << true << "en"
                               << "Original Only" << false;
    QTest::newRow("on") << true << false << "ko"
                        << "Original + Translation" << false;
    QTest::newRow("on, only") << true << true << "ko"
                              << "Translation Only" << false;
    QTest::newRow("on, same") << true << false << "en"
                              << "Original Only" << true;
    QTest::newRow("on, only, same") << true << true << "en"
                                    << "Original Only" << true;
  }
  void settingsDecideWhichTextsAreShown() {
    QFETCH(bool, translate);
    QFETCH(bool, only);
    QFETCH(QString, target);
    ModelFixture fixture([&](AppSettings& settings) {
      settings.setTranslate(translate);
      settings.setShowTranslationOnly(only);
      settings.setTargetID(target);
    });
    fixture.final("One.");
    QTEST(title(fixture.model->captionContent()), "content");
    QTEST(fixture.model->translationNotice().has_value(), "notice");
    QCOMPARE(fixture.model->pendingTranslationIDs().isEmpty(),
             fixture.model->captionContent() != TranscriptContent::translation);
  }

  void theNoticeIsLocalized() {
    ModelFixture fixture(translating);
    fixture.settings.setTargetID("en");
    QCOMPARE(fixture.model->translationNotice(),
             std::optional<QString>(
                 "Input and translation languages are the same, so the original is shown."));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(fixture.model->translationNotice(),
             std::optional<QString>("입력 언어와 번역 언어가 같아 원문을 표시합니다."));
  }

  void captionTextJoinsTranscriptAndDraft() {
    ModelFixture fixture(translating);
    QCOMPARE(fixture.model->captionText(), QString());
    fixture.draft("on");
    QCOMPARE(fixture.model->captionText(), QString("on"));
    fixture.final("One. Two.");
    fixture.draft("thr");
    QCOMPARE(fixture.model->captionText(), QString("One.\n\nTwo.\n\nthr"));
    Q_EMIT fixture.model->translator().translated(fixture.model->lines()[0].id, "ko", "하나.");
    QCOMPARE(fixture.model->captionText(), QString("One.\n하나.\n\nTwo.\n\nthr"));
    fixture.settings.setShowTranslationOnly(true);
    QCOMPARE(fixture.model->captionText(), QString("하나."));
    fixture.settings.setTargetID("ja");
    QCOMPARE(fixture.model->captionText(), QString());
    fixture.settings.setTranslate(false);
    QCOMPARE(fixture.model->captionText(), QString("One.\n\nTwo.\n\nthr"));
    fixture.draft("");
    QCOMPARE(fixture.model->captionText(), QString("One.\n\nTwo."));
    fixture.model->newSession();
    QCOMPARE(fixture.model->captionText(), QString());
  }

  void linesArePendingUntilTranslated() {
    ModelFixture fixture(translationOnly);
    fixture.start();
    fixture.final("One. Two.");
    fixture.final("Drei.", "de_DE");
    const auto idOf = [&fixture](int index) {
      return fixture.model->lines()[index].id;
    };
    QCOMPARE(fixture.model->pendingTranslationIDs(), QSet<QUuid>({idOf(0), idOf(1)}));
    Q_EMIT fixture.model->translator().translated(idOf(0), "ko", "하나.");
    QCOMPARE(fixture.model->pendingTranslationIDs(), QSet<QUuid>({idOf(1)}));
    fixture.final("Four.");
    QCOMPARE(fixture.model->pendingTranslationIDs(), QSet<QUuid>({idOf(1), idOf(3)}));
    fixture.settings.setTargetID("ja");
    QCOMPARE(fixture.model->pendingTranslationIDs(), QSet<QUuid>({idOf(0), idOf(1), idOf(3)}));
    fixture.settings.setLocaleID("de_DE");
    QCOMPARE(fixture.model->pendingTranslationIDs(), QSet<QUuid>({idOf(2)}));
    fixture.settings.setShowTranslationOnly(false);
    QVERIFY(fixture.model->pendingTranslationIDs().isEmpty());
    settle();
  }

  void noLineIsPendingWhileTranslationFails() {
    ModelFixture fixture(translationOnly);
    fixture.final("One.");
    QCOMPARE(fixture.model->pendingTranslationIDs().size(), 1);
    Q_EMIT fixture.model->translator().failed("Translation error: broken");
    QVERIFY(fixture.model->pendingTranslationIDs().isEmpty());
    fixture.final("Two.");
    Q_EMIT fixture.model->translator().translated(fixture.model->lines()[1].id, "ko", "둘.");
    QCOMPARE(fixture.model->pendingTranslationIDs().size(), 1);
  }

  void oldLinesAreTranslatedWhenTranslationIsTurnedOn() {
    ModelFixture fixture;
    fixture.start();
    fixture.final("One. Two.");
    QVERIFY(!fixture.model->translator().isActive());
    fixture.translateToUpperCase();
    fixture.settings.setTranslate(true);
    QVERIFY(fixture.model->translator().isActive());
    settle();
    QCOMPARE(fixture.translationOf(0), QString("ONE."));
    QCOMPARE(fixture.translationOf(1), QString("TWO."));
  }
};

QTEST_GUILESS_MAIN(CaptionEventsTest)
#include "caption_events_test.moc"
