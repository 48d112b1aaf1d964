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

/// Translators over scripted back ends.
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
    results_.reset();
    platform_.reset();
    // Cancelled work still reports back through the event loop.
    QCoreApplication::processEvents();
    Localization::shared().setLanguage(AppLanguage::english);
  }

  void translatesInOrder() {
    second_->installed = {kEnglishKorean};
    open("en", "ko");
    results_->translate({"one", "two", "three"});
    QTRY_COMPARE(results_->texts(), QStringList({"one/en-ko", "two/en-ko", "three/en-ko"}));
  }

  void loadsBeforeTheFirstText() {
    first_->installed = {kEnglishKorean};
    open("en", "ko");
    QTRY_COMPARE(first_->loads.load(), 1);
  }

  void ignoresRegionAndForm() {
    first_->installed = {kEnglishKorean};
    open("en_US", "ko-KR");
    results_->translate({"hi"});
    QTRY_COMPARE(results_->texts(), QStringList({"hi/en-ko"}));
  }

  void goesThroughEnglish() {
    first_->installed = {kEnglishKorean};
    second_->installed = {kSpanishEnglish};
    open("es", "ko");
    results_->translate({"hola"});
    QTRY_COMPARE(results_->texts(), QStringList({"hola/es-en/en-ko"}));
  }

  void prefersTheDirectRoute() {
    first_->installed = {kSpanishEnglish, {QStringLiteral("en"), QStringLiteral("ca")}};
    second_->installed = {kSpanishCatalan};
    open("es", "ca");
    results_->translate({"hola"});
    QTRY_COMPARE(results_->texts(), QStringList({"hola/es-ca"}));
  }

  void usesTheInstalledModelWithoutFetchingTheBetterOne() {
    first_->downloadable = {kEnglishSpanish};
    second_->installed = {kEnglishSpanish};
    open("en", "es");
    results_->translate({"hi"});
    QTRY_COMPARE(results_->texts(), QStringList({"hi/en-es"}));
    QVERIFY(first_->installs.isEmpty());
    QVERIFY(!platform_->activity());

    // The next translator uses it once the user has downloaded it.
    first_->downloadable.clear();
    first_->installed = {kEnglishSpanish};
    open("en", "es");
    QTRY_COMPARE(first_->loads.load(), 1);
  }

  void betterModelTakesOverBetweenTwoTexts() {
    first_->installed = {kEnglishKorean};
    first_->usedModel = "lesser";
    open("en", "ko");
    results_->translate({"one"});
    QTRY_COMPARE(results_->texts().size(), 1);
    const int made = first_->made;
    results_->translate({"two"});
    QTRY_COMPARE(results_->texts().size(), 2);
    QCOMPARE(first_->made, made);
    first_->usedModel = "better";
    results_->translate({"three"});
    QTRY_COMPARE(results_->texts().size(), 3);
    QCOMPARE(first_->made, made + 1);
    QTRY_COMPARE(first_->living.load(), 1);
  }

  void downloadsTheMissingModelAndReportsIt() {
    first_->downloadable = {kEnglishKorean};
    QSignalSpy changes(platform_.get(), &TranslationPlatform::activityChanged);
    QVERIFY(!platform_->activity());
    open("en", "ko");
    QTRY_COMPARE(first_->pendingInstalls.size(), std::size_t{1});
    QCOMPARE(platform_->activity(), QStringLiteral("Downloading translation model…"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(platform_->activity(), QStringLiteral("번역 모델 다운로드 중…"));
    results_->translate({"hi"});
    first_->pendingInstalls[0].complete(true);
    QTRY_COMPARE(results_->texts(), QStringList({"hi/en-ko"}));
    QVERIFY(!platform_->activity());
    QCOMPARE(changes.count(), 2);
    QCOMPARE(first_->installs, QStringList({"en-ko"}));
  }

  void theNextTextRetriesAFailedDownload() {
    first_->downloadable = {kEnglishKorean};
    open("en", "ko");
    QTRY_COMPARE(first_->pendingInstalls.size(), std::size_t{1});
    first_->pendingInstalls[0].complete(false);
    results_->translate({"one"});
    QTRY_COMPARE(first_->pendingInstalls.size(), std::size_t{2});
    first_->pendingInstalls[1].complete(false);
    QTRY_COMPARE(results_->texts(), QStringList({"error: No connection."}));
    QVERIFY(!platform_->activity());
    results_->translate({"two"});
    QTRY_COMPARE(first_->pendingInstalls.size(), std::size_t{3});
    first_->pendingInstalls[2].complete(true);
    QTRY_COMPARE(results_->texts().last(), QStringLiteral("two/en-ko"));
  }

  void anImpossiblePairNamesBothLanguages() {
    open("en", "ko");
    results_->translate({"hi"});
    QTRY_COMPARE(results_->texts(),
                 QStringList({QStringLiteral(
                     "error: Translation from English to Korean is not available.")}));
    Localization::shared().setLanguage(AppLanguage::korean);
    results_->translate({"hi"});
    QTRY_COMPARE(results_->texts().last(),
                 QStringLiteral("error: 영어에서 한국어로 번역할 수 없습니다."));
  }

  void oneFailureDoesNotAffectTheNextText() {
    first_->installed = {kEnglishKorean};
    open("en", "ko");
    results_->translate({"one", "fail", "two"});
    QTRY_COMPARE(results_->texts(), QStringList({"one/en-ko", "error: It failed.", "two/en-ko"}));
  }

  void textWithoutWordsIsUnchanged_data() {
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString();
    QTest::newRow("blank") << QStringLiteral("  ");
    QTest::newRow("punctuation") << QStringLiteral("…?!");
    QTest::newRow("emoji") << QStringLiteral("🎉👍");
  }

  void textWithoutWordsIsUnchanged() {
    QFETCH(QString, text);
    first_->installed = {kEnglishKorean};
    open("en", "ko");
    results_->translate({text});
    QTRY_COMPARE(results_->texts(), QStringList({text}));
  }

  void aStopCancelsTheTextInProgress() {
    first_->installed = {kEnglishKorean};
    first_->waits = true;
    open("en", "ko");
    QTRY_COMPARE(first_->loads.load(), 1);
    results_->translate({"one", "two"});
    QTRY_COMPARE(first_->waiting.load(), 1);
    results_->stop();
    QTRY_COMPARE(results_->texts(), QStringList({"cancelled", "cancelled"}));
    first_->waits = false;
    open("en", "ko");
    results_->translate({"three"});
    QTRY_COMPARE(results_->texts(), QStringList({"three/en-ko"}));
    QCOMPARE(first_->living.load(), 1);
  }

  void aStopDoesNotWaitForABusyTranslator() {
    first_->installed = {kEnglishKorean};
    first_->waits = true;
    first_->ignoresStop = true;
    open("en", "ko");
    QTRY_COMPARE(first_->loads.load(), 1);
    results_->translate({"one"});
    QTRY_COMPARE(first_->waiting.load(), 1);
    results_->stop();
    QTRY_COMPARE(results_->texts(), QStringList({"cancelled"}));
    // The next one waits for the thread all the same: a translator serves one text at a time.
    open("en", "ko");
    QCOMPARE(first_->loads.load(), 1);
    first_->waits = false;
    first_->go.release();
    QTRY_COMPARE(first_->loads.load(), 2);
  }

  void aStopDuringADownloadEndsQuietly() {
    first_->downloadable = {kEnglishKorean};
    open("en", "ko");
    QTRY_COMPARE(first_->pendingInstalls.size(), std::size_t{1});
    results_.reset();
    first_->pendingInstalls[0].complete(true);
    QTRY_VERIFY(!platform_->activity());
  }

  void translatesOffTheMainThread() {
    first_->installed = {kEnglishKorean};
    first_->waits = true;
    open("en", "ko");
    QTRY_COMPARE(first_->loads.load(), 1);
    results_->translate({"one"});
    QTRY_COMPARE(first_->waiting.load(), 1);
    bool ran = false;
    QMetaObject::invokeMethod(
        this, [&ran] { ran = true; }, Qt::QueuedConnection);
    QTRY_VERIFY(ran);
    QVERIFY(results_->texts().isEmpty());
    first_->go.release();
    QTRY_COMPARE(results_->texts().size(), 1);
  }

  void releasesIdleModels() {
    first_->installed = {kEnglishKorean};
    open("en", "ko");
    results_->translate({"one"});
    QTRY_COMPARE(results_->texts().size(), 1);
    clock_.advance(TranslatorPool::kIdleTimeout - std::chrono::seconds(1));
    QCOMPARE(first_->living.load(), 1);
    clock_.advance(std::chrono::seconds(1));
    QTRY_COMPARE(first_->living.load(), 0);
    results_->translate({"two"});
    QTRY_COMPARE(results_->texts().last(), QStringLiteral("two/en-ko"));
  }

  void keepsModelsLoadedForTheNextTranslator() {
    first_->installed = {kEnglishKorean};
    open("en", "ko");
    QTRY_COMPARE(first_->loads.load(), 1);
    results_.reset();
    open("en", "ko");
    QTRY_COMPARE(first_->loads.load(), 2);
    QCOMPARE(first_->living.load(), 1);
  }

  void listsEveryReachableLanguage() {
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

  void tellsWhatALanguageHasToDownload() {
    first_->downloadBytes = 30;
    first_->downloadable = {kEnglishKorean, kEnglishSpanish, kSpanishEnglish};
    second_->installed = {kSpanishCatalan, kEnglishSpanish};
    using Bytes = std::vector<std::optional<qint64>>;
    QCOMPARE(platform_->downloadBytes("en_US", {"ko", "es", "ca"}), Bytes({30, 0, std::nullopt}));
    // Spanish to Korean goes through English.
    QCOMPARE(platform_->downloadBytes("es_ES", {"ko", "en", "ca"}), Bytes({60, 30, 0}));
    QCOMPARE(platform_->downloadBytes("fr_FR", {"ko"}), Bytes({std::nullopt}));
    QCOMPARE(platform_->downloadBytes("ko_KR", {"ko"}), Bytes({std::nullopt}));
  }

 private:
  void open(const char* source, const char* target) {
    results_ = std::make_unique<CollectedTranslations>(
        platform_->makeTranslator(QLatin1String(source), QLatin1String(target)));
  }

  ManualClock clock_;
  std::shared_ptr<BackendScript> first_, second_;
  std::unique_ptr<LocalTranslationPlatform> platform_;
  std::unique_ptr<CollectedTranslations> results_;
};

QTEST_GUILESS_MAIN(LocalTranslationTest)
#include "local_translation_test.moc"
