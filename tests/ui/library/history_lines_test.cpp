// SPDX-License-Identifier: GPL-3.0-or-later
#include "history_view_suite.h"
#include "platform/foundation/failure.h"
#include "support/saved_sessions.h"
#include "ui/caption/transcript_layout.h"

#include <QClipboard>

using namespace velun;

/// What can be done with one line of a saved session.
class HistoryLinesTest final : public test::HistoryViewSuite {
  Q_OBJECT

  /// Saves a session of two lines, shows it, and puts the cursor into the second.
  QUrl showTwoLines() {
    CaptionSession session;
    session.title = "Talk";
    for (const QString text : {"Their is one.", "Two heir."}) {
      Line line;
      line.text = text;
      line.translations["ko"] = "번역";
      session.lines.push_back(line);
    }
    const QUrl url = write(session);
    reload();
    library_->select(url);
    putCursorAt("heir.");
    return url;
  }

  void putCursorAt(const QString& text) {
    auto& view = detail()->transcript().textView();
    QTextCursor cursor = view.document()->find(text);
    cursor.clearSelection();
    view.setTextCursor(cursor);
  }

  /// Whether a bar stands beside the line of the transcript that holds the text.
  bool isMarked(const QString& text) {
    auto& view = detail()->transcript().textView();
    const int y = view.cursorRect(view.document()->find(text)).center().y();
    const QImage image = view.viewport()->grab().toImage();
    return image.pixelColor(TranscriptLayout::horizontalInset / 2, y) ==
           QGuiApplication::palette().color(QPalette::Highlight);
  }

  CaptionSession saved(const QUrl& url) { return test::readSession(url); }

 private Q_SLOTS:
  void theLineOfTheCommandsIsMarkedWithItsTranslation() {
    showTwoLines();
    QVERIFY(!isMarked("Their"));
    QVERIFY(isMarked("heir."));
    auto& view = detail()->transcript().textView();
    QTextCursor second(view.document());
    second.movePosition(QTextCursor::End);
    view.setTextCursor(second);
    QVERIFY(isMarked("heir."));
    putCursorAt("Their");
    QVERIFY(isMarked("Their"));
    QVERIFY(!isMarked("heir."));
  }

  void aLineIsCopied() {
    showTwoLines();
    action("Copy Line")->trigger();
    QCOMPARE(QGuiApplication::clipboard()->text(), QString("Two heir.\n번역"));
  }

  void theSpeakerOfALineIsNamedByTheMenuOrAClick() {
    const QUrl url = showTwoLines();
    QVERIFY(!action("Name Speaker…")->isEnabled());
    CaptionSession session = saved(url);
    session.lines[0].speaker = session.lines[1].speaker = "1";
    QFile::remove(url.toLocalFile());
    const QUrl spoken = write(session);
    reload();
    library_->select(spoken);
    QVERIFY(transcript().contains("Speaker 1?: Two heir."));
    speaker_ = "Anna";
    putCursorAt("heir.");
    action("Name Speaker…")->trigger();
    QCOMPARE(*saved(spoken).lines[0].speaker, QString("Anna"));
    QCOMPARE(*saved(spoken).lines[1].speaker, QString("Anna"));
    QVERIFY(transcript().contains("Anna: Two heir."));
    speaker_ = "Berta";
    auto& view = detail()->transcript().textView();
    QTextCursor label = view.document()->find("Anna: Their");
    label.setPosition(label.selectionStart() + 2);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.cursorRect(label).center());
    QTRY_COMPARE(*saved(spoken).lines[1].speaker, QString("Berta"));
    QTextCursor words = view.document()->find("Their");
    words.setPosition(words.selectionEnd());
    speaker_ = "Nobody";
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.cursorRect(words).center());
    QCoreApplication::processEvents();
    QCOMPARE(*saved(spoken).lines[1].speaker, QString("Berta"));
  }

  void aLineIsCorrectedAndTheOriginalKept() {
    const QUrl url = showTwoLines();
    correction_ = "Two here.";
    QVERIFY(!action("Undo Correction")->isEnabled());
    action("Correct Line…")->trigger();
    QCOMPARE(saved(url).lines[1].text, QString("Two here."));
    QCOMPARE(*saved(url).lines[1].original, QString("Two heir."));
    QVERIFY(!saved(url).lines[0].original);
    QVERIFY(transcript().contains("Corrected"));
    QVERIFY(saved(url).exportAs({}).contains("Two here."));
    search()->setText("here.");
    QTRY_COMPARE(rows().size(), 2);
    search()->setText("heir.");
    QTRY_COMPARE(rows().size(), 0);
  }

  void ofLinesWithOneIdTheClickedOneIsCorrected() {
    CaptionSession session = saved(showTwoLines());
    session.id = QUuid::createUuid();
    session.lines[1].id = session.lines[0].id;
    const QUrl url = write(session);
    reload();
    library_->select(url);
    putCursorAt("heir.");
    correction_ = "Two here.";
    action("Correct Line…")->trigger();
    QCOMPARE(saved(url).lines[0].text, QString("Their is one."));
    QCOMPARE(saved(url).lines[1].text, QString("Two here."));
  }

  void aCorrectionOfALineThatIsGoneIsRefused() {
    const QUrl url = showTwoLines();
    const Line gone;
    QVERIFY_EXCEPTION_THROWN(library_->correctLine(url, gone, "Anything."), Failure);
    QCOMPARE(saved(url).lines.size(), std::size_t(2));
  }

  void aNameFromElsewhereTakesNoParagraphOfItsOwn() {
    CaptionSession session = saved(showTwoLines());
    session.id = QUuid::createUuid();
    session.lines[0].speaker = QString("A") + QChar(0xFDD0) + "B";
    const QUrl url = write(session);
    reload();
    library_->select(url);
    auto& view = detail()->transcript().textView();
    QTextCursor end(view.document());
    end.movePosition(QTextCursor::End);
    view.setTextCursor(end);
    QVERIFY(isMarked("heir."));
    QVERIFY(!isMarked("Their"));
  }

  void aCorrectionIsUndone() {
    const QUrl url = showTwoLines();
    const CaptionSession before = saved(url);
    correction_ = "Two hair.";
    action("Correct Line…")->trigger();
    putCursorAt("hair.");
    correction_ = "Two here.";
    action("Correct Line…")->trigger();
    putCursorAt("Two here.");
    QCOMPARE(*saved(url).lines[1].original, QString("Two heir."));
    QVERIFY(action("Undo Correction")->isEnabled());
    action("Undo Correction")->trigger();
    QCOMPARE(saved(url), before);
    QVERIFY(!action("Undo Correction")->isEnabled());
  }

  void withoutASessionThereIsNoLine() {
    write("Talk", 0, "One.");
    reload();
    QVERIFY(!action("Copy Line")->isEnabled());
    QVERIFY(!action("Correct Line…")->isEnabled());
  }

  void theMenuOfALineWorksOnTheLineUnderThePointer() {
    showTwoLines();
    auto& view = detail()->transcript().textView();
    const QTextCursor first = view.document()->find("Their");
    QMenu menu;
    Q_EMIT view.menuOpening(menu, view.cursorRect(first).center());
    QStringList offered;
    for (const QAction* each : menu.actions()) offered.append(each->text());
    QCOMPARE(offered,
             QStringList({"", "Copy Line", "Correct Line…", "Undo Correction", "Name Speaker…"}));
    QCOMPARE(detail()->currentLine()->text, QString("Their is one."));
  }
};

QTEST_MAIN(HistoryLinesTest)
#include "history_lines_test.moc"
