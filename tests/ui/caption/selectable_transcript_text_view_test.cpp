// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/selectable_transcript_text_view.h"

#include "support/settle.h"
#include "support/suite.h"
#include "ui/caption/transcript_samples.h"
#include "ui/caption/transcript_view.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QScrollBar>
#include <QTextCursor>

using namespace velun;
using test::lineOf;
using test::settle;

class SelectableTranscriptTextViewTest final : public test::Suite {
  Q_OBJECT

 private:
  struct Stage {
    explicit Stage(int lines = 3) {
      for (int i = 0; i < lines; ++i) {
        session.lines.push_back(lineOf(QStringLiteral("Line %1 of many.").arg(i)));
      }
      inputs.session = &session;
      inputs.captionStyle = true;
      inputs.followsLatest = true;
      view.resize(400, 200);
      view.show();
      view.update(inputs, {});
      settle();
    }
    SelectableTranscriptTextView& text() const { return view.textView(); }
    QScrollBar* bar() const { return text().verticalScrollBar(); }
    void select(int from, int to) const {
      QTextCursor cursor(text().document());
      cursor.setPosition(from);
      cursor.setPosition(to, QTextCursor::KeepAnchor);
      text().setTextCursor(cursor);
    }

    CaptionSession session;
    TranscriptInputs inputs;
    TranscriptView view;
  };

  static const QMimeData& copied() { return *QApplication::clipboard()->mimeData(); }

 private Q_SLOTS:
  void selectionIsCopiedAsPlainText() {
    const Stage stage;
    // White text on the dark panel.
    QCOMPARE(stage.text().palette().color(QPalette::Text), QColor(Qt::white));
    stage.select(5, 24);
    QTest::keyClick(&stage.text(), Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(copied().text(), QString("0 of many.\nLine 1 o"));
    QCOMPARE(copied().formats(), QStringList{"text/plain"});
    QVERIFY(!copied().hasHtml());
  }

  void everythingIsSelectedAndCopiedByKeys() {
    const Stage stage;
    QTest::keyClick(&stage.text(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&stage.text(), Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(copied().text(), QString("Line 0 of many.\nLine 1 of many.\nLine 2 of many."));
    QCOMPARE(copied().formats(), QStringList{"text/plain"});
  }

  void caretIsShownOnlyWhileTheKeyboardIsUsed() {
    QApplication::setCursorFlashTime(0);
    const Stage stage;
    QWidget* area = stage.text().viewport();
    const QImage before = area->grab().toImage();
    QVERIFY(QTest::qWaitForWindowActive(&stage.text()));
    stage.text().setFocus();
    QCOMPARE(area->grab().toImage(), before);
    QTest::mouseClick(area, Qt::LeftButton);
    QCOMPARE(area->grab().toImage(), before);
    QTest::keyClick(&stage.text(), Qt::Key_Home, Qt::ControlModifier);
    QVERIFY(area->grab().toImage() != before);
    // At another place: it would be a double click.
    QTest::mouseClick(area, Qt::LeftButton, {}, area->rect().topLeft() + QPoint(5, 5));
    QCOMPARE(area->grab().toImage(), before);
    stage.text().setFocus(Qt::TabFocusReason);
    stage.text().clearFocus();
    stage.text().setFocus(Qt::TabFocusReason);
    QVERIFY(area->grab().toImage() != before);
    stage.text().clearFocus();
    QCOMPARE(area->grab().toImage(), before);
  }

  void draggingTheMouseSelectsWhatIsCopied() {
    const Stage stage;
    const auto at = [&stage](int position) {
      QTextCursor cursor(stage.text().document());
      cursor.setPosition(position);
      return stage.text().cursorRect(cursor).center();
    };
    QWidget* area = stage.text().viewport();
    QTest::mousePress(area, Qt::LeftButton, {}, at(0));
    QVERIFY(stage.text().isSelectingText());
    QMouseEvent drag(QEvent::MouseMove, at(6), area->mapToGlobal(at(6)), Qt::NoButton,
                     Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(area, &drag);
    QTest::mouseRelease(area, Qt::LeftButton, {}, at(6));
    QVERIFY(!stage.text().isSelectingText());
    QTest::keyClick(&stage.text(), Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(copied().text(), QString("Line 0"));
  }

  void resizingKeepsTheEndWithinTwoPoints_data() {
    QTest::addColumn<int>("distance");
    QTest::addColumn<bool>("keepsEnd");
    QTest::newRow("at the end") << 0 << true;
    QTest::newRow("2 points above it") << 2 << true;
    QTest::newRow("3 points above it") << 3 << false;
    QTest::newRow("within the slack of new lines") << 24 << false;
  }
  void resizingKeepsTheEndWithinTwoPoints() {
    QFETCH(int, distance);
    QFETCH(bool, keepsEnd);
    Stage stage(60);
    stage.bar()->setValue(stage.bar()->maximum() - distance);
    const int top = stage.bar()->value();
    stage.view.resize(400, 150);
    settle();
    QCOMPARE(stage.bar()->value() == stage.bar()->maximum(), keepsEnd);
    QCOMPARE(stage.bar()->value() == top, !keepsEnd);
  }
};

QTEST_MAIN(SelectableTranscriptTextViewTest)
#include "selectable_transcript_text_view_test.moc"
