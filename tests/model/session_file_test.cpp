// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_file/session_file.h"

#include "language/localization.h"
#include "model/session_file/json_writer.h"
#include "model/session_file/session_reader.h"
#include "support/session_samples.h"
#include "support/suite.h"

#include <QFile>
#include <QJsonDocument>

using namespace velun;

namespace {

CaptionSession withText(const QString& text) {
  CaptionSession session = test::sampleSession();
  session.lines.front().text = text;
  return session;
}

QByteArray jsonString(const QString& text) {
  QByteArray bytes;
  JsonWriter(bytes).string(text);
  return bytes;
}

}  // namespace

class SessionFileTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void writesTheExampleByteForByteAndReadsItBack() {
    QFile file(QStringLiteral(VELUN_TEST_DATA "/example.json"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray example = file.readAll();
    QCOMPARE(encodeSession(test::sampleSession()), example);
    QVERIFY(decodeSession(example) == test::sampleSession());
  }

  void keepsTheTimesAtWhichWordsWereSaid() {
    using namespace std::chrono_literals;
    CaptionSession session = test::sampleSession();
    session.lines[0].start = 7ms;
    session.lines[0].end = 3723040ms;
    session.lines[1].start = 0ms;
    const QByteArray bytes = encodeSession(session);
    QVERIFY(bytes.contains("      \"end\" : 3723.040,\n      \"id\""));
    QVERIFY(bytes.contains("      \"start\" : 0.007,\n      \"text\""));
    QVERIFY(bytes.contains("      \"start\" : 0.000,\n"));
    QVERIFY(decodeSession(bytes) == session);
    // As written by others: without digits behind the point, with more of them, with an exponent.
    QByteArray other = bytes;
    other.replace("0.007", "7.4e-3").replace("3723.040", "3723.0404").replace("0.000", "0");
    QVERIFY(decodeSession(other) == session);
    // The slow reader, which is used for large files, agrees.
    QVERIFY(readSessionText(other) == session);
  }

  void sessionWithoutLinesHasAnEmptyList() {
    CaptionSession session = test::sampleSession();
    session.lines.clear();
    session.endedAt.reset();
    const QByteArray bytes = encodeSession(session);
    QCOMPARE(bytes, QByteArray("{\n"
                               "  \"id\" : \"9F2C4E1A-3B7D-4C8E-A1F0-5D6E7F809A1B\",\n"
                               "  \"lines\" : [\n"
                               "\n"
                               "  ],\n"
                               "  \"schemaVersion\" : 1,\n"
                               "  \"startedAt\" : \"2025-03-01T09:04:58Z\",\n"
                               "  \"title\" : \"Caption Session\"\n"
                               "}"));
    QVERIFY(decodeSession(bytes) == session);
  }

  void omitsAbsentValues() {
    CaptionSession session = test::sampleSession();
    Line bare;
    bare.text = "bare";
    session.lines = {bare};
    const QByteArray bytes = encodeSession(session);
    for (const char* key : {"time", "sourceLanguage", "input", "legacyTimestamp",
                            "legacyTranslation", "original", "null"}) {
      QVERIFY2(!bytes.contains(key), key);
    }
    QVERIFY(decodeSession(bytes) == session);
  }

  void writesEveryFieldUnderSortedKeys() {
    CaptionSession session = test::sampleSession();
    session.lines = {{QUuid("0c1d2e3f-4a5b-4c6d-8e7f-90a1b2c3d4e5"),
                      test::utc(2025, 3, 1, 9, 5, 7),
                      "t",
                      "ko_KR",
                      AudioInput::microphone,
                      {{"ko", "b"}, {"en", "a"}},
                      "00:01:02",
                      "legacy"}};
    const QByteArray bytes = encodeSession(session);
    QVERIFY(
        bytes.contains("    {\n"
                       "      \"id\" : \"0C1D2E3F-4A5B-4C6D-8E7F-90A1B2C3D4E5\",\n"
                       "      \"input\" : \"microphone\",\n"
                       "      \"legacyTimestamp\" : \"00:01:02\",\n"
                       "      \"legacyTranslation\" : \"legacy\",\n"
                       "      \"sourceLanguage\" : \"ko_KR\",\n"
                       "      \"text\" : \"t\",\n"
                       "      \"time\" : \"2025-03-01T09:05:07Z\",\n"
                       "      \"translations\" : {\n"
                       "        \"en\" : \"a\",\n"
                       "        \"ko\" : \"b\"\n"
                       "      }\n"
                       "    }\n"));
    QVERIFY(decodeSession(bytes) == session);
  }

  void aCorrectedLineHasOneMoreKey() {
    CaptionSession session = test::sampleSession();
    Line line;
    line.text = "Their is one.";
    session.lines = {line};
    const QByteArray before = encodeSession(session);
    session.lines[0].correct("There is one.");
    QByteArray expected = before;
    expected.replace("\"text\" : \"Their is one.\"",
                     "\"original\" : \"Their is one.\",\n      \"text\" : \"There is one.\"");
    QCOMPARE(encodeSession(session), expected);
    QVERIFY(decodeSession(expected) == session);
    session.lines[0].correct("Their is one.");
    QCOMPARE(encodeSession(session), before);
  }

  void aLineWithASpeakerHasOneMoreKey() {
    CaptionSession session = test::sampleSession();
    Line line;
    line.text = "There is one.";
    session.lines = {line};
    const QByteArray before = encodeSession(session);
    session.lines[0].speaker = "1";
    QByteArray expected = before;
    expected.replace("\"text\" :", "\"speaker\" : \"1\",\n      \"text\" :");
    QCOMPARE(encodeSession(session), expected);
    QVERIFY(decodeSession(expected) == session);
    session.lines[0].speaker.reset();
    QCOMPARE(encodeSession(session), before);
  }

  void sortsTranslationKeysByCodePoint() {
    const QString astral = QString::fromUcs4(U"\U0001F600", 1);
    const QString wide = QString(QChar(0xFF21));
    CaptionSession session = test::sampleSession();
    session.lines.front().translations = {{astral, "2"}, {wide, "1"}};
    const QByteArray bytes = encodeSession(session);
    QVERIFY(bytes.indexOf(wide.toUtf8()) < bytes.indexOf(astral.toUtf8()));
    QVERIFY(decodeSession(bytes) == session);
  }

  void escapesOnlyWhereRequired_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("empty") << QString("") << QByteArray("\"\"");
    QTest::newRow("slash") << QString("a/b") << QByteArray("\"a/b\"");
    QTest::newRow("quote and backslash") << QString("\"\\") << QByteArray("\"\\\"\\\\\"");
    QTest::newRow("short escapes") << QString("\b\f\n\r\t") << QByteArray("\"\\b\\f\\n\\r\\t\"");
    QTest::newRow("control characters")
        << QString::fromUtf8("\0\x01\x1f", 3) << QByteArray("\"\\u0000\\u0001\\u001f\"");
    QTest::newRow("delete") << QString("\x7f") << QByteArray("\"\x7f\"");
    QTest::newRow("two bytes") << QString("é") << QByteArray("\"é\"");
    QTest::newRow("three bytes") << QString("한국어日本") << QByteArray("\"한국어日本\"");
    QTest::newRow("four bytes") << QString("😀") << QByteArray("\"😀\"");
    QTest::newRow("line separators") << QString("\u2028\u2029") << QByteArray("\"\u2028\u2029\"");
    QTest::newRow("high half alone") << QString(QChar(0xD83D)) + "x" << QByteArray("\"\uFFFDx\"");
    QTest::newRow("high half at the end") << QString(QChar(0xD83D)) << QByteArray("\"\uFFFD\"");
    QTest::newRow("low half alone") << QString(QChar(0xDE00)) << QByteArray("\"\uFFFD\"");
  }
  void escapesOnlyWhereRequired() {
    QFETCH(QString, text);
    QFETCH(QByteArray, json);
    QCOMPARE(jsonString(text), json);
  }

  void everyCharacterIsReadBack() {
    QString all;
    for (char32_t c = 0; c < 0x11000; ++c) {
      if (!QChar::isSurrogate(c)) all += QString::fromUcs4(&c, 1);
    }
    all += QString::fromUcs4(U"\U0010FFFF", 1);
    const CaptionSession session = withText(all);
    const QByteArray bytes = encodeSession(session);
    QVERIFY(decodeSession(bytes) == session);
    QVERIFY(readSessionText(bytes) == session);
    // Qt reads the same.
    const QJsonDocument document = QJsonDocument::fromJson(bytes);
    QCOMPARE(document["lines"][0]["text"].toString(), all);
  }

  void dropsFractionsOfSeconds() {
    CaptionSession session = test::sampleSession();
    session.startedAt += std::chrono::microseconds(999'999);
    const CaptionSession read = decodeSession(encodeSession(session));
    QVERIFY(read != session);
    QVERIFY(read == test::sampleSession());
  }

  void roundsDownTimesBefore1970() {
    CaptionSession session = test::sampleSession();
    session.startedAt = test::utc(1969, 12, 31, 23, 59, 58) + std::chrono::microseconds(1);
    QVERIFY(encodeSession(session).contains("\"startedAt\" : \"1969-12-31T23:59:58Z\""));
  }

  void clampsTimesToFourDigitYears() {
    CaptionSession session = test::sampleSession();
    session.startedAt = Instant(std::chrono::microseconds::max());
    session.endedAt = Instant(std::chrono::microseconds::min());
    const QByteArray bytes = encodeSession(session);
    QVERIFY(bytes.contains("\"startedAt\" : \"9999-12-31T23:59:59Z\""));
    QVERIFY(bytes.contains("\"endedAt\" : \"0000-01-01T00:00:00Z\""));
    decodeSession(bytes);
  }

  void readsLowerCaseIdsAndWritesUpperCase() {
    const QByteArray bytes = encodeSession(test::sampleSession());
    QByteArray lower = bytes;
    lower.replace("9F2C4E1A-3B7D-4C8E-A1F0-5D6E7F809A1B", "9f2c4e1a-3b7d-4c8e-a1f0-5d6e7f809a1b");
    QVERIFY(lower != bytes);
    QCOMPARE(encodeSession(decodeSession(lower)), bytes);
  }

  void ignoresUnknownKeys_data() {
    QTest::addColumn<QByteArray>("value");
    QTest::newRow("nested") << QByteArray("[{\"a\":[null,true,false,{}],\"b\":-1.5e+3},[]]");
    QTest::newRow("a number beyond all types") << QByteArray("1e999");
    QTest::newRow("an integer beyond all types") << QByteArray("123456789012345678901234567890");
    QTest::newRow("text") << QByteArray("\"\\u00e9\\ud83d\\ude00\\\"}\"");
  }
  void ignoresUnknownKeys() {
    QFETCH(QByteArray, value);
    QByteArray bytes = encodeSession(test::sampleSession());
    bytes.replace("\"schemaVersion\"", "\"extra\" : " + value + ",\n\"schemaVersion\"");
    bytes.replace("\"text\"", "\"extra\" : " + value + ",\n\"text\"");
    QVERIFY(decodeSession(bytes) == test::sampleSession());
    QVERIFY(readSessionText(bytes) == test::sampleSession());
  }

  void nullIsAbsentIfOptional() {
    const QByteArray bytes = R"({"schemaVersion":1,"id":"9F2C4E1A-3B7D-4C8E-A1F0-5D6E7F809A1B",
        "startedAt":"2025-03-01T09:04:58Z","endedAt":null,"title":"","lines":[
        {"id":"0C1D2E3F-4A5B-4C6D-8E7F-90A1B2C3D4E5","text":"","translations":{},"time":null,
         "sourceLanguage":null,"input":null,"legacyTimestamp":null,"legacyTranslation":null}]})";
    for (const CaptionSession& read : {decodeSession(bytes), readSessionText(bytes)}) {
      QVERIFY(!read.endedAt);
      const Line& line = read.lines.at(0);
      QVERIFY(!line.time && !line.sourceLanguage && !line.input);
      QVERIFY(!line.legacyTimestamp && !line.legacyTranslation);
    }
  }

  void keepsEmptyLegacyValues() {
    CaptionSession session = test::sampleSession();
    session.lines.front().legacyTimestamp = "";
    session.lines.front().legacyTranslation = "";
    QVERIFY(decodeSession(encodeSession(session)) == session);
    QVERIFY(readSessionText(encodeSession(session)) == session);
  }

  void lastDuplicateKeyWins() {
    QByteArray bytes = encodeSession(test::sampleSession());
    bytes.replace("\"title\" : \"Caption Session\"", "\"title\" : \"a\", \"title\" : \"b\"");
    QCOMPARE(decodeSession(bytes).title, QString("b"));
    QCOMPARE(readSessionText(bytes).title, QString("b"));
  }

  void skipsAByteOrderMark() {
    QVERIFY(decodeSession("\xEF\xBB\xBF" + encodeSession(test::sampleSession())) ==
            test::sampleSession());
  }

  void treeAndTextAgreeOnALongSession() {
    CaptionSession session = test::longSession(500);
    session.lines[7].legacyTimestamp = "00:00:07";
    session.lines[8].time.reset();
    session.lines[9].translations["ja"] = "川";
    session.lines[10].sourceLanguage = "ko_KR";
    const QByteArray bytes = encodeSession(session);
    const std::optional<CaptionSession> fast = readSessionTree(bytes);
    QVERIFY(fast);
    QVERIFY(*fast == session);
    QVERIFY(readSessionText(bytes) == session);
  }

  void tenThousandLinesAreReadAndWrittenUnchanged() {
    const QByteArray bytes = encodeSession(test::longSession(10'000));
    QVERIFY(bytes.size() > 4'000'000);
    QVERIFY(encodeSession(decodeSession(bytes)) == bytes);
  }

  void jsonExportIsTheSessionFileForEveryChoice() {
    const CaptionSession session = test::sampleSession();
    const QByteArray bytes = encodeSession(session);
    for (const TranscriptContent content : allTranscriptContents) {
      QCOMPARE(session.exportAs({SessionFormat::json, content}), bytes);
      QCOMPARE(session.exportAs({SessionFormat::json, content, QString("ja")}), bytes);
    }
  }
};

QTEST_GUILESS_MAIN(SessionFileTest)
#include "session_file_test.moc"
