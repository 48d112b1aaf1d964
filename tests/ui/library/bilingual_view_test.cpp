// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/bilingual_view.h"

#include "history_view_suite.h"
#include "support/saved_sessions.h"
#include "ui/library/print_session.h"

#include <QClipboard>
#include <QComboBox>
#include <QPrinter>

using namespace velun;

/// A session read, searched, copied and printed with its texts side by side.
class BilingualViewTest final : public test::HistoryViewSuite {
  Q_OBJECT

  BilingualView* table() const { return view_->findChild<BilingualView*>(); }

  void chooseContent(int index) const {
    auto* contents = detail()->findChildren<QComboBox*>().front();
    contents->setCurrentIndex(index);
    Q_EMIT contents->activated(index);
  }

  /// Shows a session of `count` lines side by side.
  QUrl show(int count) {
    CaptionSession session;
    session.title = "Talk";
    session.startedAt = clock_.now();
    for (int i = 0; i < count; ++i) {
      Line line;
      line.text = QStringLiteral("Line %1 of the talk").arg(i);
      line.sourceLanguage = "en_US";
      line.translations["ko"] = QStringLiteral("%1번째 줄").arg(i);
      session.lines.push_back(line);
    }
    const QUrl url = write(session);
    reload();
    library_->select(url);
    chooseContent(3);
    return url;
  }

  QString cell(int row, int column) const {
    return table()->model()->index(row, column).data().toString();
  }

 private Q_SLOTS:
  void largeLettersAreForTheTexts() {
    CaptionSession session;
    session.title = "Talk";
    session.startedAt = clock_.now();
    Line line;
    line.text = "One line";
    line.time = session.startedAt;
    line.input = AudioInput::computer;
    session.computerName = "Computer";
    session.lines.push_back(line);
    const QUrl url = write(session);
    reload();
    library_->select(url);
    chooseContent(3);
    settings_->setFontSize(48);
    const QAbstractItemModel& rows = *table()->model();
    const int last = rows.columnCount() - 1;
    QCOMPARE(last, 2);
    QVERIFY(!rows.index(0, last).data(Qt::FontRole).isValid());
    QCOMPARE(table()->font().pixelSize(), 48);
    for (int column = 0; column < last; ++column) {
      QVERIFY(qvariant_cast<QFont>(rows.index(0, column).data(Qt::FontRole)).pixelSize() < 24);
    }
  }

  void showsTheTextsSideBySide() {
    show(3);
    QVERIFY(table()->isVisible());
    QVERIFY(!detail()->transcript().isVisible());
    QCOMPARE(table()->model()->headerData(1, Qt::Horizontal).toString(), QString("Korean"));
    QCOMPARE(cell(2, 0), QString("Line 2 of the talk"));
    QCOMPARE(cell(2, 1), QString("2번째 줄"));
    chooseContent(0);
    QVERIFY(!table()->isVisible());
    QVERIFY(transcript().contains("Line 2 of the talk"));
  }

  void aLongTextHasALargerRow() {
    CaptionSession session;
    session.title = "Long";
    Line line;
    line.text = QStringLiteral("many words ").repeated(60);
    session.lines = {line, Line()};
    write(session);
    reload();
    library_->select(library_->sessions().front()->url);
    chooseContent(3);
    QVERIFY(table()->rowHeight(0) > 3 * table()->rowHeight(1));
  }

  void theSearchMarksCellsAndStepsThroughRows() {
    show(300);
    search()->setText("of the talk");
    QTRY_COMPARE(table()->currentIndex().row(), 0);
    const auto background = [this](int row, int column) {
      return table()->model()->index(row, column).data(Qt::BackgroundRole).isValid();
    };
    QVERIFY(background(5, 0));
    QVERIFY(!background(5, 1));
    search()->setText("250");
    QTRY_COMPARE(table()->currentIndex().row(), 250);
    QVERIFY(table()->viewport()->rect().intersects(table()->visualRect(table()->currentIndex())));
    search()->setText("99");
    QTRY_COMPARE(table()->currentIndex().row(), 99);
    QVERIFY(detail()->stepToMatch(true));
    QCOMPARE(table()->currentIndex().row(), 199);
    QVERIFY(detail()->stepToMatch(false));
    QVERIFY(!detail()->stepToMatch(false));
  }

  void linesAreCopiedExportedAndCorrected() {
    const QUrl url = show(4);
    table()->selectRow(1);
    action("Copy Line")->trigger();
    QCOMPARE(QGuiApplication::clipboard()->text(), QString("Line 1 of the talk\n1번째 줄"));
    correction_ = "Line one of the talk";
    action("Correct Line…")->trigger();
    QCOMPARE(cell(1, 0), correction_);
    QCOMPARE(test::readSession(url).lines[1].text, correction_);
    // The place stays.
    QCOMPARE(table()->currentIndex().row(), 1);
    table()->selectionModel()->select(
        QItemSelection(table()->model()->index(1, 0), table()->model()->index(2, 1)),
        QItemSelectionModel::ClearAndSelect);
    for (QAction* each : table()->actions()) {
      if (each->text() == "Copy") each->trigger();
    }
    QCOMPARE(QGuiApplication::clipboard()->text(),
             QString("Line one of the talk\t1번째 줄\nLine 2 of the talk\t2번째 줄"));
    action("Export")->trigger();
    QCOMPARE(selected_, (std::optional(LineRange{1, 2})));
  }

  void findingGoesToTheSearch() {
    show(2);
    view_->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(view_.get()));
    table()->setFocus();
    action("Find in Transcript")->trigger();
    QVERIFY(search()->hasFocus());
  }

  void printsWhatIsShown() {
    show(400);
    action("Print…")->trigger();
    QCOMPARE(calls_, QStringList({"print Talk"}));
    QVERIFY(printed_.contains("<th dir=\"auto\">Korean</th>"));
    QVERIFY(printed_.contains("Line 399 of the talk"));
    const QString path = folder_->filePath("talk.pdf");
    QPrinter printer;
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(path);
    print(printed_, printer);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    QVERIFY(bytes.startsWith("%PDF"));
    QVERIFY(bytes.count("/Type /Page\n") > 5);
  }
};

QTEST_MAIN(BilingualViewTest)
#include "bilingual_view_test.moc"
