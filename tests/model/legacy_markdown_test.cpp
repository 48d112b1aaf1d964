// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/legacy_markdown.h"

#include "language/localization.h"
#include "model/session_file/session_file.h"
#include "model/session_store.h"
#include "platform/foundation/file_access.h"
#include "support/saved_sessions.h"
#include "support/session_samples.h"
#include "support/suite.h"
#include "support/time_zone.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace velun;

namespace {

const QString kHeading = "# 자막 세션 — ";

std::vector<Line> linesOf(const QString& body) {
  return parseLegacyMarkdown((kHeading + "2024-11-02\n" + body).toUtf8(), Instant(),
                             QStringLiteral("t"))
      .lines;
}

}  // namespace

class LegacyMarkdownTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    test::setTimeZone("Asia/Seoul");
    QVERIFY(folder_.isValid());
  }
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void readsATranscriptAsASession() {
    const QUrl url = write("2024-11-02_20-15-00.md",
                           kHeading + "2024-11-02\n\n`20:15:03` Hello\n> 안녕\n> 반가워\n");
    const CaptionSession session = test::readSession(url);
    QCOMPARE(session.schemaVersion, 1);
    QCOMPARE(session.title, QString("Caption Session"));
    QVERIFY(session.startedAt == test::utc(2024, 11, 2, 11, 15, 0));
    QVERIFY(!session.endedAt);
    QCOMPARE(session.lines.size(), 1u);
    const Line& line = session.lines[0];
    QVERIFY(!line.id.isNull());
    QVERIFY(!line.time && !line.sourceLanguage && !line.input);
    QVERIFY(line.translations.empty());
    QCOMPARE(line.text, QString("Hello"));
    QCOMPARE(line.legacyTimestamp, std::optional<QString>("20:15:03"));
    QCOMPARE(line.legacyTranslation, std::optional<QString>("안녕\n반가워"));
  }

  void titleIsInTheInterfaceLanguage() {
    const QUrl url = write("ko.md", kHeading + "\n");
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(test::readSession(url).title, QString("자막 세션"));
  }

  void rejectsAnotherHeading_data() {
    QTest::addColumn<QString>("text");
    QTest::newRow("English") << "# Caption Session — 2024-11-02\n`20:15:03` Hello\n";
    QTest::newRow("hyphen for the dash") << "# 자막 세션 - 2024-11-02\n";
    QTest::newRow("no space behind the dash") << "# 자막 세션 —";
    QTest::newRow("not in the first line") << "\n# 자막 세션 — 2024-11-02\n";
    QTest::newRow("empty") << "";
  }
  void rejectsAnotherHeading() {
    QFETCH(QString, text);
    const QUrl url = write("other.md", text);
    QCOMPARE(refusal(url), QString("This isn’t a transcript from an earlier version of Velun."));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(refusal(url), QString("Velun의 이전 자막 기록 형식이 아닙니다."));
  }

  void rejectsUnreadableFiles() {
    QCOMPARE(refusal(QUrl::fromLocalFile(folder_.filePath("none.md"))),
             QString("“none.md” doesn’t exist."));
    const QUrl broken = writeBytes("broken.md", kHeading.toUtf8() + "\n\xFF\n");
    QCOMPARE(refusal(broken), QString("“broken.md” is not a UTF-8 text."));
    QVERIFY(QDir(folder_.path()).mkdir("folder.md"));
    QCOMPARE(refusal(QUrl::fromLocalFile(folder_.filePath("folder.md"))),
             QString("“folder.md” is not a file."));
  }

  void headingAloneIsASessionWithoutLines() {
    QVERIFY(parseLegacyMarkdown(kHeading.toUtf8(), Instant(), "t").lines.empty());
    QVERIFY(linesOf("").empty());
  }

  void headingIsNeverACaption() {
    const QByteArray bytes = (kHeading + "`20:15:03` Hello").toUtf8();
    QVERIFY(parseLegacyMarkdown(bytes, Instant(), "t").lines.empty());
  }

  void keepsACaptionWithoutText() {
    const std::vector<Line> lines = linesOf("`20:15:03`\n`20:15:04` \t \n");
    QCOMPARE(lines.size(), 2u);
    QCOMPARE(lines[0].text, QString());
    QCOMPARE(lines[1].text, QString());
    QCOMPARE(lines[1].legacyTimestamp, std::optional<QString>("20:15:04"));
  }

  void trimsOnlySpacesAndTabsFromCaptions() {
    QCOMPARE(linesOf("`1` \t a b \u00A0\t ")[0].text, QString("a b \u00A0"));
    QCOMPARE(linesOf("`1`text right behind")[0].text, QString("text right behind"));
  }

  void keepsTimeTextsUnchanged() {
    QCOMPARE(*linesOf("` 8 pm ` a")[0].legacyTimestamp, QString(" 8 pm "));
    QCOMPARE(*linesOf("`` a")[0].legacyTimestamp, QString());
    QCOMPARE(linesOf("`1` a `b`")[0].text, QString("a `b`"));
  }

  void skipsACaptionWithOneBackquote() {
    const std::vector<Line> lines = linesOf("`1` a\n`20:15:03 Hello\n> to the first\n");
    QCOMPARE(lines.size(), 1u);
    QCOMPARE(*lines[0].legacyTranslation, QString("to the first"));
  }

  void skipsATranslationBeforeTheFirstCaption() {
    const std::vector<Line> lines = linesOf("> early\n`1` a\n");
    QCOMPARE(lines.size(), 1u);
    QVERIFY(!lines[0].legacyTranslation);
  }

  void keepsTranslationsUnchanged() {
    QCOMPARE(*linesOf("`1` a\n>  b \t\n> \n")[0].legacyTranslation, QString(" b \t\n"));
    QCOMPARE(*linesOf("`1` a\n> \n")[0].legacyTranslation, QString(""));
    QVERIFY(!linesOf("`1` a\n>b\n")[0].legacyTranslation);
  }

  void ignoresOtherLines() {
    const std::vector<Line> lines =
        linesOf("## Notes\n\n `1` indented\ntext\n`1` a\n\nbetween\n> b\n`2` c\n> d");
    QCOMPARE(lines.size(), 2u);
    QCOMPARE(*lines[0].legacyTranslation, QString("b"));
    QCOMPARE(*lines[1].legacyTranslation, QString("d"));
  }

  void splitsLinesAtEveryNewlineCharacter_data() {
    QTest::addColumn<QString>("newline");
    for (const char16_t c : u"\n\v\f\r\u0085\u2028\u2029") {
      if (c == 0) continue;
      QTest::addRow("U+%04X", c) << QString(QChar(c));
    }
    QTest::addRow("CR LF") << QString("\r\n");
  }
  void splitsLinesAtEveryNewlineCharacter() {
    QFETCH(QString, newline);
    const QStringList text = {kHeading + "x", "`1` a", "> b", "`2` c"};
    const auto session = parseLegacyMarkdown(text.join(newline).toUtf8(), Instant(), "t");
    QCOMPARE(session.lines.size(), 2u);
    QCOMPARE(session.lines[0].text, QString("a"));
    QCOMPARE(*session.lines[0].legacyTranslation, QString("b"));
    QCOMPARE(session.lines[1].text, QString("c"));
  }

  void doesNotSplitLinesAtOtherSpaces() {
    QCOMPARE(linesOf("`1` a\u001Cb\u2027c")[0].text, QString("a\u001Cb\u2027c"));
  }

  void startIsTheCreationTimeIfTheNameIsNotATime_data() {
    QTest::addColumn<QString>("name");
    QTest::newRow("words") << "Evening talk.md";
    QTest::newRow("no such day") << "2024-02-30_20-15-00.md";
    QTest::newRow("no such hour") << "2024-11-02_25-15-00.md";
    QTest::newRow("one digit") << "2024-11-2_20-15-00.md";
    QTest::newRow("more behind it") << "2024-11-02_20-15-00 copy.md";
  }
  void startIsTheCreationTimeIfTheNameIsNotATime() {
    QFETCH(QString, name);
    const Instant before = currentInstant() - std::chrono::seconds(1);
    const QUrl url = write(name, kHeading);
    const Instant after = currentInstant() + std::chrono::seconds(1);
    // The creation time does not change when the file is modified later.
    QFile file(url.toLocalFile());
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(QDateTime::fromSecsSinceEpoch(0), QFileDevice::FileModificationTime));
    const Instant startedAt = test::readSession(url).startedAt;
    QVERIFY(startedAt >= before && startedAt <= after);
  }

  void startIsNowWithoutAnyDate_data() {
    QTest::addColumn<QString>("file");
    QTest::newRow("file system without creation times") << "/proc/version";
    QTest::newRow("file that disappeared") << "/nowhere/talk.md";
  }
  void startIsNowWithoutAnyDate() {
    QFETCH(QString, file);
    QVERIFY(!creationTime(file));
    const Instant before = currentInstant();
    const Instant startedAt = legacyStart(file);
    QVERIFY(startedAt >= before && startedAt <= currentInstant());
  }

  void startIsLocalTimeInWinterAndSummer() {
    QVERIFY(legacyStart("/x/2024-07-01_00-00-00.md") == test::utc(2024, 6, 30, 15, 0, 0));
    QVERIFY(legacyStart("/x/2024-12-31_23-59-59.MD") == test::utc(2024, 12, 31, 14, 59, 59));
  }

  void doesNotChangeTheFile() {
    const QUrl url = write("kept.md", kHeading + "\n`1` a\n");
    QFile file(url.toLocalFile());
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray before = file.readAll();
    const CaptionSession session = test::readSession(url);
    QCOMPARE(session.lines.size(), 1u);
    file.seek(0);
    QCOMPARE(file.readAll(), before);
  }

 private:
  QUrl writeBytes(const QString& name, const QByteArray& bytes) {
    QFile file(folder_.filePath(name));
    if (!file.open(QIODevice::WriteOnly)) qFatal("cannot write");
    file.write(bytes);
    return QUrl::fromLocalFile(file.fileName());
  }
  QUrl write(const QString& name, const QString& text) { return writeBytes(name, text.toUtf8()); }

  static QString refusal(const QUrl& url) {
    try {
      test::readSession(url);
    } catch (...) {
      return readingErrorText(std::current_exception(), url.toLocalFile());
    }
    return {};
  }

  QTemporaryDir folder_;
};

QTEST_GUILESS_MAIN(LegacyMarkdownTest)
#include "legacy_markdown_test.moc"
