// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/caption_languages.h"

#include "language/localization.h"
#include "platform/foundation/one_shot.h"
#include "platform/translation/pair_models.h"
#include "support/scripted_speech_platform.h"
#include "support/scripted_translation_platform.h"
#include "support/settle.h"
#include "support/suite.h"

#include <memory>
#include <QSignalSpy>

using namespace velun;
using test::settle;

namespace {

struct Fixture {
  Fixture() { locales.clear(); }

  void load() {
    const QCoro::Task<> task = offered.load();
    settle();
    QVERIFY(task.isReady());
  }

  test::ScriptedSpeechPlatform speech;
  test::ScriptedTranslationPlatform translation;
  QStringList& locales = speech.script->locales;
  QStringList& languages = translation.languages;
  CaptionLanguages offered{speech, translation};
};

/// Lists its languages when the test says so.
class SlowTranslationPlatform final : public TranslationPlatform {
 public:
  explicit SlowTranslationPlatform(const OneShot<QStringList>& list) : list_(list) {}

  std::unique_ptr<Translator> makeTranslator(const QString&, const QString&) override {
    return nullptr;
  }
  QCoro::Task<QStringList> supportedLanguages() override {
    const OneShot<QStringList> list = list_;
    const QStringList languages = co_await list;
    co_return languages;
  }
  std::vector<std::optional<qint64>> downloadBytes(const QString&,
                                                   const QStringList&) const override {
    return {};
  }
  std::vector<PairModels> models() const override { return {}; }
  std::optional<QString> activity() const override { return std::nullopt; }

 private:
  OneShot<QStringList> list_;
};

}  // namespace

class CaptionLanguagesTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void languageWhoseLicenceMustBeAgreedToIsNotReady() {
    Fixture fixture;
    fixture.locales = {"de_DE"};
    fixture.load();
    QVERIFY(fixture.offered.localeChoices().front().isReady());
    fixture.speech.script->needsAgreement = true;
    QVERIFY(!fixture.offered.localeChoices().front().downloadBytes);
  }

  void areSortedByTheirNames() {
    Fixture fixture;
    fixture.locales = {"ko_KR", "en_US", "de_DE"};
    fixture.languages = {"ja", "ko", "en", "zz", "fr"};
    QVERIFY(fixture.offered.locales().isEmpty() && fixture.offered.languages().isEmpty());
    fixture.load();
    QCOMPARE(fixture.offered.locales(), QStringList({"en_US", "de_DE", "ko_KR"}));
    QCOMPARE(fixture.offered.languages(), QStringList({"en", "fr", "ja", "ko", "zz"}));

    Localization::shared().setLanguage(AppLanguage::korean);
    fixture.load();
    // 독일어, 영어, 한국어; zz (Latin) before Hangul, then 영어, 일본어, 프랑스어, 한국어.
    QCOMPARE(fixture.offered.locales(), QStringList({"de_DE", "en_US", "ko_KR"}));
    QCOMPARE(fixture.offered.languages(), QStringList({"zz", "en", "ja", "fr", "ko"}));
  }

  void equalNamesKeepTheirOrder() {
    Fixture fixture;
    fixture.languages = {"en-US", "de", "en_US"};
    fixture.load();
    QCOMPARE(fixture.offered.languages(), QStringList({"en-US", "en_US", "de"}));
  }

  void choicesThatAreReadyComeFirst() {
    Fixture fixture;
    fixture.locales = {"ko_KR", "en_US"};
    fixture.languages = {"ko", "es", "de", "fr"};
    fixture.translation.bytes = {{"de", 17}, {"fr", 30}};
    fixture.load();
    const std::vector<LanguageChoice> targets = fixture.offered.languageChoices("en_US");
    QCOMPARE(targets, (std::vector<LanguageChoice>{{"ko", "Korean", 0},
                                                   {"es", "Spanish", 0},
                                                   {"fr", "French", 30},
                                                   {"de", "German", 17}}));
    const std::vector<LanguageChoice> locales = fixture.offered.localeChoices();
    QCOMPARE(locales, (std::vector<LanguageChoice>{{"en_US", "English (United States)", 0},
                                                   {"ko_KR", "Korean (South Korea)", 0}}));
    auto offer = std::make_shared<test::ScriptedModelOffer>();
    fixture.speech.script->offer = offer;
    QCOMPARE(fixture.offered.localeChoices()[0].downloadBytes, offer->downloadBytes());
  }

  void onlyADifferentListIsAnnounced() {
    Fixture fixture;
    fixture.locales = {"ko_KR", "en_US"};
    const QSignalSpy locales(&fixture.offered, &CaptionLanguages::localesChanged);
    const QSignalSpy languages(&fixture.offered, &CaptionLanguages::languagesChanged);
    fixture.load();
    fixture.load();
    QCOMPARE(locales.count(), 1);
    QCOMPARE(languages.count(), 0);
  }

  void destructionWhileLoadingIsHarmless() {
    const OneShot<QStringList> list;
    test::ScriptedSpeechPlatform speech;
    SlowTranslationPlatform translation(list);
    auto languages = std::make_unique<CaptionLanguages>(speech, translation);
    const QCoro::Task<> task = languages->load();
    QVERIFY(!task.isReady());
    languages.reset();
    list.complete({"en"});
    settle();
    QVERIFY(task.isReady());
  }
};

QTEST_GUILESS_MAIN(CaptionLanguagesTest)
#include "caption_languages_test.moc"
