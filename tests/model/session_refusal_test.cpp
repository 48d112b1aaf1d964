// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/localization.h"
#include "model/session_file/session_file.h"
#include "model/session_file/session_problem.h"
#include "model/session_file/session_reader.h"
#include "support/session_samples.h"
#include "support/suite.h"

#include <QScopeGuard>
#include <sys/mman.h>

using namespace velun;

namespace {

QByteArray example() {
  return encodeSession(test::sampleSession());
}

/// The text of the refusal; empty if the bytes are read.
QString refusal(const QByteArray& bytes) {
  try {
    decodeSession(bytes);
  } catch (const SessionProblem& problem) {
    return describe(problem, QStringLiteral("talk.json"));
  }
  return {};
}

QString atLine(int line, const QString& what) {
  return QStringLiteral("“talk.json” couldn’t be read. Line %1 of the file: %2.")
      .arg(QString::number(line), what);
}

}  // namespace

class SessionRefusalTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void rejectsOtherVersions_data() {
    QTest::addColumn<QByteArray>("version");
    QTest::newRow("newer") << QByteArray("2");
    QTest::newRow("zero") << QByteArray("0");
    QTest::newRow("negative") << QByteArray("-1");
    QTest::newRow("one in the low 32 bits") << QByteArray("4294967297");
    QTest::newRow("beyond 64 bits") << QByteArray("123456789012345678901234567890");
  }
  void rejectsOtherVersions() {
    QFETCH(QByteArray, version);
    QByteArray bytes = example();
    bytes.replace("\"schemaVersion\" : 1", "\"schemaVersion\" : " + version);
    QCOMPARE(refusal(bytes), QString("This session was saved by a newer version of Velun."));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(refusal(bytes), QString("이 기록은 더 최신 버전의 Velun에서 저장했습니다."));
  }

  void checksTheVersionLast() {
    QByteArray bytes = example();
    bytes.replace("\"schemaVersion\" : 1", "\"schemaVersion\" : 2");
    bytes.replace("\"title\" : \"Caption Session\"", "\"title\" : 5");
    QCOMPARE(refusal(bytes), atLine(28, "“title” is not a text"));
  }

  void namesTheProblemAndItsLine_data() {
    QTest::addColumn<QByteArray>("piece");
    QTest::addColumn<QByteArray>("instead");
    QTest::addColumn<QString>("text");
    const auto row = [](const char* name, const char* piece, const char* instead, int line,
                        const char* what) {
      QTest::newRow(name) << QByteArray(piece) << QByteArray(instead) << atLine(line, what);
    };
    const char* line = "    {\n      \"id\" : \"1A2B3C4D-5E6F-4A7B-8C9D-0E1F2A3B4C5D\",\n";
    row("time with a fraction", "09:05:11Z", "09:05:11.250Z", 20, "“time” is not a date");
    row("start with a fraction", "09:04:58Z", "09:04:58.250Z", 27, "“startedAt” is not a date");
    row("end with an offset", "2025-03-01T09:12:40Z", "2025-03-01T09:12:40+00:00", 2,
        "“endedAt” is not a date");
    row("lower-case letters in a date", "09:04:58Z", "09:04:58z", 27, "“startedAt” is not a date");
    row("no such day", "2025-03-01T09:04:58Z", "2025-02-29T09:04:58Z", 27,
        "“startedAt” is not a date");
    row("no such hour", "09:04:58Z", "24:04:58Z", 27, "“startedAt” is not a date");
    row("a leap second", "09:04:58Z", "23:59:60Z", 27, "“startedAt” is not a date");
    row("a date that is a number", "\"2025-03-01T09:04:58Z\"", "762512698", 27,
        "“startedAt” is not a text");
    row("a missing session id", "  \"id\" : \"9F2C", "  \"no\" : \"9F2C", 1, "“id” is missing");
    row("missing lines", "\"lines\"", "\"line\"", 1, "“lines” is missing");
    row("a missing version", "schemaVersion", "schema", 1, "“schemaVersion” is missing");
    row("a missing start", "startedAt", "started", 1, "“startedAt” is missing");
    row("a missing title", "title", "titel", 1, "“title” is missing");
    row("a speaker that is a number", "      \"text\" : \"Today",
        "      \"speaker\" : 1,\n      \"text\" : \"Today", 19, "“speaker” is not a text");
    row("a missing line id", line, "    {\n", 15, "“id” is missing");
    row("a missing text", "\"text\" : \"Today", "\"test\" : \"Today", 15, "“text” is missing");
    row("missing translations",
        "      \"time\" : \"2025-03-01T09:05:11Z\",\n"
        "      \"translations\" : {\n\n      }",
        "      \"time\" : \"2025-03-01T09:05:11Z\"", 15, "“translations” is missing");
    row("null where a value is required", "\"Caption Session\"", "null", 28,
        "“title” is not a text");
    row("an id in braces", "\"9F2C4E1A-3B7D-4C8E-A1F0-5D6E7F809A1B\"",
        "\"{9F2C4E1A-3B7D-4C8E-A1F0-5D6E7F809A1B}\"", 3, "“id” is not an identifier");
    row("an id with another letter", "9F2C4E1A", "9F2C4E1G", 3, "“id” is not an identifier");
    row("an id without hyphens", "9F2C4E1A-3B7D-4C8E-A1F0-5D6E7F809A1B",
        "9F2C4E1A03B7D04C8E0A1F005D6E7F809A1B", 3, "“id” is not an identifier");
    row("another input", "\"computer\"", "\"phone\"", 7,
        "“input” is neither “computer” nor “microphone”");
    row("an input in upper case", "\"computer\"", "\"Computer\"", 7,
        "“input” is neither “computer” nor “microphone”");
    row("an input that is a list", "\"computer\"", "[]", 7, "“input” is not a text");
    row("a text that is an object", "\"Welcome back to the show.\"", "{}", 9,
        "“text” is not a text");
    row("a language that is a number", "\"en_US\"", "1", 8, "“sourceLanguage” is not a text");
    row("a legacy time that is true", "\"sourceLanguage\" : \"en_US\"",
        "\"legacyTimestamp\" : true", 8, "“legacyTimestamp” is not a text");
    row("a legacy translation that is 0", "\"sourceLanguage\" : \"en_US\"",
        "\"legacyTranslation\" : 0", 8, "“legacyTranslation” is not a text");
    row("translations that are a list", "{\n\n      }", "[]", 21,
        "“translations” is not an object");
    row("a translation that is null", "\"쇼에 다시 오신 것을 환영합니다.\"", "null", 12,
        "“ko” is not a text");
    row("lines that are an object", "\"lines\" : [", "\"lines\" : {}, \"x\" : [", 4,
        "“lines” is not a list");
    row("a line that is a text", "\"lines\" : [", "\"lines\" : [\n\"x\",", 5,
        "“lines” is not an object");
    row("a version that is a text", "\"schemaVersion\" : 1", "\"schemaVersion\" : \"1\"", 26,
        "“schemaVersion” is not a whole number");
    row("a version with a fraction", "\"schemaVersion\" : 1", "\"schemaVersion\" : 1.5", 26,
        "“schemaVersion” is not a whole number");
    row("a start that is a text", "\"sourceLanguage\" : \"en_US\"", "\"start\" : \"1\"", 8,
        "“start” is not a number of seconds from 0 to 1,000,000,000");
    row("a start before the session", "\"sourceLanguage\" : \"en_US\"", "\"start\" : -0.5", 8,
        "“start” is not a number of seconds from 0 to 1,000,000,000");
    row("an end beyond reason", "\"sourceLanguage\" : \"en_US\"", "\"end\" : 1e10", 8,
        "“end” is not a number of seconds from 0 to 1,000,000,000");
    row("an end beyond all numbers", "\"sourceLanguage\" : \"en_US\"", "\"end\" : 1e999", 8,
        "“end” is not a number of seconds from 0 to 1,000,000,000");
    row("a missing comma", "\"input\" : \"computer\",", "\"input\" : \"computer\"", 8,
        "this is not a session file");
    row("a comma too many", "\"title\" : \"Caption Session\"", "\"title\" : \"Caption Session\",",
        29, "this is not a session file");
    row("a word that JSON lacks", "\"Caption Session\"", "nothing", 28,
        "this is not a session file");
    row("a number that JSON lacks", "\"schemaVersion\" : 1", "\"x\" : 01, \"schemaVersion\" : 1",
        26, "this is not a session file");
    row("an escape that JSON lacks", "Caption Session", "\\x41", 28, "this is not a session file");
    row("a tab in a text", "Caption Session", "Caption\tSession", 28,
        "a text holds a character that is not valid");
    row("a high half alone", "Caption Session", "\\ud83d!", 28,
        "a text holds a character that is not valid");
    row("a low half alone", "Caption Session", "\\ude00", 28,
        "a text holds a character that is not valid");
    row("a high half twice", "Caption Session", "\\ud83d\\ud83d", 28,
        "a text holds a character that is not valid");
    row("bytes that are not UTF-8", "rivers", "ri\xFFvers", 19, "the text is not valid UTF-8");
    row("a surrogate in UTF-8", "rivers", "\xED\xA0\xBD", 19, "the text is not valid UTF-8");
    row("an overlong slash", "rivers", "\xC0\xAF", 19, "the text is not valid UTF-8");
  }
  void namesTheProblemAndItsLine() {
    QFETCH(QByteArray, piece);
    QFETCH(QByteArray, instead);
    QFETCH(QString, text);
    QByteArray bytes = example();
    const qsizetype at = bytes.indexOf(piece);
    QVERIFY(at >= 0);
    bytes.replace(at, piece.size(), instead);
    QVERIFY(!readSessionTree(bytes));
    QCOMPARE(refusal(bytes), text);
  }

  void rejectsTruncatedFiles() {
    const QByteArray bytes = example();
    for (qsizetype size = 0; size < bytes.size(); ++size) {
      const QByteArray cut = bytes.left(size);
      QVERIFY2(!readSessionTree(cut), QByteArray::number(size));
      QVERIFY2(!refusal(cut).isEmpty(), QByteArray::number(size));
    }
    QCOMPARE(refusal(bytes.chopped(1)), atLine(29, "the file ends too early"));
  }

  void rejectsAnythingBehindTheSession() {
    QCOMPARE(refusal(example() + "\n{}"), atLine(30, "this is not a session file"));
    QCOMPARE(refusal(example() + QByteArray(1, '\0')), atLine(29, "this is not a session file"));
    QVERIFY(refusal(example() + " \r\n\t").isEmpty());
  }

  void rejectsOtherDocuments() {
    QCOMPARE(refusal({}), QString("“talk.json” is empty."));
    QCOMPARE(refusal(" \n"), QString("“talk.json” is empty."));
    QCOMPARE(refusal("[]"), atLine(1, "the session is not an object"));
    QCOMPARE(refusal("# Notes"), atLine(1, "this is not a session file"));
    QCOMPARE(refusal("{}"), atLine(1, "“schemaVersion” is missing"));
  }

  void rejectsDeepNesting() {
    const QByteArray deep(2'000'000, '[');
    QByteArray bytes = example();
    bytes.replace("\"title\"", "\"x\" : " + deep + ", \"title\"");
    QCOMPARE(refusal(bytes), atLine(28, "values are nested too deeply"));
    QCOMPARE(refusal(deep), atLine(1, "values are nested too deeply"));
  }

  void rejectsTooManyLinesAndTranslations() {
    QByteArray bytes = "{\"lines\":[";
    const QByteArray line =
        R"({"id":"0C1D2E3F-4A5B-4C6D-8E7F-90A1B2C3D4E5","text":"","translations":{)";
    bytes += line;
    for (std::size_t i = 0; i <= kMaxLinesAndTranslations; ++i) bytes += "\"\":\"\",";
    QCOMPARE(refusal(bytes), atLine(1,
                                    "there are more lines and translations than a session can "
                                    "hold"));
  }

  void rejectsTranslationsIntoTooManyLanguages() {
    CaptionSession session = test::longSession(2);
    const auto addLanguages = [&session](int count) {
      for (int i = 0; i < count; ++i) {
        session.lines[std::size_t(i % 2)].translations[QStringLiteral("x-%1").arg(i)] = "a";
      }
    };
    addLanguages(static_cast<int>(kMaxTranslationLanguages) - 1);
    QCOMPARE(refusal(encodeSession(session)), QString());
    addLanguages(static_cast<int>(kMaxTranslationLanguages));
    QVERIFY(refusal(encodeSession(session))
                .contains("there are translations into more than 500 languages."));
    Localization::shared().setLanguage(AppLanguage::korean);
    QVERIFY(refusal(encodeSession(session)).contains("번역 언어가 500개를 넘습니다."));
  }

  void rejectsFilesOver256Megabytes() {
    // Never read, so it needs no physical memory.
    const std::size_t size = kMaxSessionFileSize + 1;
    void* const memory = mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    QVERIFY(memory != MAP_FAILED);
    const auto unmap = qScopeGuard([memory, size] { munmap(memory, size); });
    const QByteArray bytes = QByteArray::fromRawData(static_cast<const char*>(memory), size);
    QCOMPARE(refusal(bytes),
             QString("“talk.json” is larger than 256 MB, more than a session can be."));
  }

  void refusalsAreInTheInterfaceLanguage() {
    Localization::shared().setLanguage(AppLanguage::korean);
    QByteArray bytes = example();
    bytes.replace("09:05:11Z", "09:05:11.250Z");
    QCOMPARE(refusal(bytes),
             QString("“talk.json” 파일을 읽을 수 없습니다. 파일의 20번째 줄: “time” "
                     "값이 날짜가 아닙니다."));
    QCOMPARE(refusal({}), QString("“talk.json” 파일이 비어 있습니다."));
  }

  void showsPlaceholdersInKeysUnchanged() {
    QByteArray bytes = example();
    bytes.replace("\"ko\" : \"쇼에 다시 오신 것을 환영합니다.\"", "\"%1%2\" : 1");
    QCOMPARE(refusal(bytes), atLine(12, "“%1%2” is not a text"));
  }
};

QTEST_GUILESS_MAIN(SessionRefusalTest)
#include "session_refusal_test.moc"
