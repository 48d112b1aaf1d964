// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/localization.h"
#include "platform/translation/local_translation_platform.h"
#include "platform/translation/support/collected_translations.h"
#include "platform/translation/support/scripted_backend.h"
#include "support/manual_clock.h"
#include "support/suite.h"

#include <QSignalSpy>
#include <QTest>

using namespace velun;
using namespace velun::test;

namespace {

const LanguagePair kEnglishKorean{QStringLiteral("en"), QStringLiteral("ko")};
const LanguagePair kEnglishSpanish{QStringLiteral("en"), QStringLiteral("es")};
const LanguagePair kSpanishEnglish{QStringLiteral("es"), QStringLiteral("en")};
const LanguagePair kSpanishCatalan{QStringLiteral("es"), QStringLiteral("ca")};

QCoro::Task<QStringList> englishAndSpanish() {
  const QStringList languages{QStringLiteral("en_US"), QStringLiteral("es_ES")};
  co_return languages;
}

}  // namespace

/// Sessions over scripted back ends.
class LocalTranslationTest final : public Suite {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    Suite::init();
    first_ = std::make_shared<BackendScript>();
    second_ = std::make_shared<BackendScript>();
    std::vector<std::unique_ptr<TranslatorBackend>> backends;
    backends.push_back(std::make_unique<ScriptedBackend>(first_));
    backends.push_back(std::make_unique<ScriptedBackend>(second_));
    platform_ =
        std::make_unique<LocalTranslationPlatform>(std::move(backends), englishAndSpanish, clock_);
  }

  void cleanup() {
    session_.reset();
    platform_.reset();
    // What was called off still reports back through the event loop.
    QCoreApplication::processEvents();
    Localization::shared().setLanguage(AppLanguage::english);
  }

  void translatesInOrder() {
    second_->installed = {kEnglishKorean};
    open("en", "ko");
    CollectedTranslations results;
    for (const char* text : {"one", "two", "three"}) results.start(*session_, text);
    QTRY_COMPARE(results.texts(), QStringList({"one/en-ko", "two/en-ko", "three/en-ko"}));
  }

  void loadsBeforeTheFirstText() {
    first_->installed = {kEnglishKorean};
    open("en", "ko");
    QTRY_COMPARE(first_->loads.load(), 1);
  }

  void ignoresRegionAndForm() {
    first_->installed = {kEnglishKorean};
    open("en_US", "ko-KR");
    CollectedTranslations results;
    results.start(*session_, "hi");
    QTRY_COMPARE(results.texts(), QStringList({"hi/en-ko"}));
  }

  void goesThroughEnglish() {
    first_->installed = {kEnglishKorean};
    second_->installed = {kSpanishEnglish};
    open("es", "ko");
    CollectedTranslations results;
    results.start(*session_, "hola");
    QTRY_COMPARE(results.texts(), QStringList({"hola/es-en/en-ko"}));
  }

  void prefersTheDirectWay() {
    first_->installed = {kSpanishEnglish, {QStringLiteral("en"), QStringLiteral("ca")}};
    second_->installed = {kSpanishCatalan};
    open("es", "ca");
    CollectedTranslations results;
    results.start(*session_, "hola");
    QTRY_COMPARE(results.texts(), QStringList({"hola/es-ca"}));
  }

  void prefersWhatIsInstalledAndFetchesTheBetterQuietly() {
    first_->downloadable = {kEnglishSpanish};
    second_->installed = {kEnglishSpanish};
    open("en", "es");
    CollectedTranslations results;
    results.start(*session_, "hi");
    QTRY_COMPARE(results.texts(), QStringList({"hi/en-es"}));
    QCOMPARE(first_->quietInstalls, QStringList({"en-es"}));
    QVERIFY(first_->installs.isEmpty());
    QVERIFY(!platform_->activity());

    // Once it is there, the next session uses it.
    first_->downloadable.clear();
    first_->installed = {kEnglishSpanish};
    open("en", "es");
    QTRY_COMPARE(first_->loads.load(), 1);
  }

  void downloadsWhatIsMissingAndSaysSo() {
    first_->downloadable = {kEnglishKorean};
    QSignalSpy changes(platform_.get(), &TranslationPlatform::activityChanged);
    QVERIFY(!platform_->activity());
    open("en", "ko");
    QTRY_COMPARE(first_->pendingInstalls.size(), std::size_t{1});
    QCOMPARE(platform_->activity(), QStringLiteral("Downloading translation model…"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(platform_->activity(), QStringLiteral("번역 모델 다운로드 중…"));
    CollectedTranslations results;
    results.start(*session_, "hi");
    first_->pendingInstalls[0].complete(true);
    QTRY_COMPARE(results.texts(), QStringList({"hi/en-ko"}));
    QVERIFY(!platform_->activity());
    QCOMPARE(changes.count(), 2);
    QCOMPARE(first_->installs, QStringList({"en-ko"}));
  }

  void aFailedDownloadIsTriedAgainByTheNextText() {
    first_->downloadable = {kEnglishKorean};
    open("en", "ko");
    QTRY_COMPARE(first_->pendingInstalls.size(), std::size_t{1});
    first_->pendingInstalls[0].complete(false);
    CollectedTranslations results;
    results.start(*session_, "one");
    QTRY_COMPARE(first_->pendingInstalls.size(), std::size_t{2});
    first_->pendingInstalls[1].complete(false);
    QTRY_COMPARE(results.texts(), QStringList({"error: No connection."}));
    QVERIFY(!platform_->activity());
    results.start(*session_, "two");
    QTRY_COMPARE(first_->pendingInstalls.size(), std::size_t{3});
    first_->pendingInstalls[2].complete(true);
    QTRY_COMPARE(results.texts().last(), QStringLiteral("two/en-ko"));
  }

  void anImpossiblePairNamesBothLanguages() {
    open("en", "ko");
    CollectedTranslations results;
    results.start(*session_, "hi");
    QTRY_COMPARE(results.texts(),
                 QStringList({QStringLiteral(
                     "error: Translation from English to Korean is not available.")}));
    Localization::shared().setLanguage(AppLanguage::korean);
    results.start(*session_, "hi");
    QTRY_COMPARE(results.texts().last(),
                 QStringLiteral("error: 영어에서 한국어로 번역할 수 없습니다."));
  }

  void oneFailureDoesNotEndTheSession() {
    first_->installed = {kEnglishKorean};
    open("en", "ko");
    CollectedTranslations results;
    for (const char* text : {"one", "fail", "two"}) results.start(*session_, text);
    QTRY_COMPARE(results.texts(), QStringList({"one/en-ko", "error: It failed.", "two/en-ko"}));
  }

  void textWithoutWordsStaysAsItIs_data() {
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString();
    QTest::newRow("blank") << QStringLiteral("  ");
    QTest::newRow("punctuation") << QStringLiteral("…?!");
    QTest::newRow("emoji") << QStringLiteral("🎉👍");
  }

  void textWithoutWordsStaysAsItIs() {
    QFETCH(QString, text);
    first_->installed = {kEnglishKorean};
    open("en", "ko");
    CollectedTranslations results;
    results.start(*session_, text);
    QTRY_COMPARE(results.texts(), QStringList({text}));
  }

  void closingCallsOffWhatIsUnderWay() {
    first_->installed = {kEnglishKorean};
    first_->waits = true;
    open("en", "ko");
    CollectedTranslations results;
    results.start(*session_, "one");
    results.start(*session_, "two");
    QTRY_COMPARE(first_->waiting.load(), 1);
    session_.reset();
    QTRY_COMPARE(results.texts(), QStringList({"cancelled", "cancelled"}));
    first_->waits = false;
    open("en", "ko");
    results.start(*session_, "three");
    QTRY_COMPARE(results.texts().last(), QStringLiteral("three/en-ko"));
  }

  void closingDuringADownloadEndsQuietly() {
    first_->downloadable = {kEnglishKorean};
    open("en", "ko");
    QTRY_COMPARE(first_->pendingInstalls.size(), std::size_t{1});
    session_.reset();
    first_->pendingInstalls[0].complete(true);
    QTRY_VERIFY(!platform_->activity());
  }

  void theEventLoopRunsOnWhileItTranslates() {
    first_->installed = {kEnglishKorean};
    first_->waits = true;
    open("en", "ko");
    CollectedTranslations results;
    results.start(*session_, "one");
    QTRY_COMPARE(first_->waiting.load(), 1);
    bool ran = false;
    QMetaObject::invokeMethod(
        this, [&ran] { ran = true; }, Qt::QueuedConnection);
    QTRY_VERIFY(ran);
    QVERIFY(results.texts().isEmpty());
    first_->go.release();
    QTRY_COMPARE(results.texts().size(), 1);
  }

  void letsGoOfWhatIsNotUsed() {
    first_->installed = {kEnglishKorean};
    open("en", "ko");
    CollectedTranslations results;
    results.start(*session_, "one");
    QTRY_COMPARE(results.texts().size(), 1);
    clock_.advance(TranslatorPool::kIdleTime - std::chrono::seconds(1));
    QCOMPARE(first_->living.load(), 1);
    clock_.advance(std::chrono::seconds(1));
    QTRY_COMPARE(first_->living.load(), 0);
    results.start(*session_, "two");
    QTRY_COMPARE(results.texts().last(), QStringLiteral("two/en-ko"));
  }

  void keepsWhatIsLoadedFromSessionToSession() {
    first_->installed = {kEnglishKorean};
    open("en", "ko");
    QTRY_COMPARE(first_->loads.load(), 1);
    session_.reset();
    open("en", "ko");
    QTRY_COMPARE(first_->loads.load(), 2);
    QCOMPARE(first_->living.load(), 1);
  }

  void listsEveryLanguageWithinReach() {
    first_->downloadable = {kEnglishKorean, {QStringLiteral("ja"), QStringLiteral("en")}};
    second_->installed = {kEnglishSpanish,
                          kSpanishEnglish,
                          kSpanishCatalan,
                          {QStringLiteral("oc"), QStringLiteral("fr")}};
    QCoro::Task<QStringList> task = platform_->supportedLanguages();
    QStringList languages;
    task.then([&languages](const QStringList& list) { languages = list; });
    // Korean for English directly and for Spanish through English; French only from a language
    // that cannot be recognized.
    QTRY_COMPARE(languages, QStringList({"ca", "en", "es", "ko"}));
  }

 private:
  void open(const char* source, const char* target) {
    session_ = platform_->openSession(
        TranslationConfiguration(QLatin1String(source), QLatin1String(target)));
  }

  ManualClock clock_;
  std::shared_ptr<BackendScript> first_, second_;
  std::unique_ptr<LocalTranslationPlatform> platform_;
  std::unique_ptr<TranslationSession> session_;
};

QTEST_GUILESS_MAIN(LocalTranslationTest)
#include "local_translation_test.moc"
