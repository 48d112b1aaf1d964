// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/suite.h"
#include "ui/caption/transcript_layout.h"
#include "ui/caption/transcript_stage.h"

#include <QSignalSpy>
#include <QTextBlock>

using namespace velun;
using test::kAdded;
using test::lineOf;
using test::settle;
using Stage = test::TranscriptStage;

/// Which part of a transcript is in view.
class TranscriptScrollingTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void followsTheLatestWhileAtTheBottom() {
    Stage stage;
    stage.addLines(50);
    stage.update();
    QCOMPARE(stage.toEnd(), 0);
    QVERIFY(stage.bar()->maximum() > 0);
    stage.addLines(3);
    stage.update(kAdded);
    QCOMPARE(stage.toEnd(), 0);
    QVERIFY(stage.view.atBottom());
  }

  void changingTheContentKeepsFollowing() {
    Stage stage;
    stage.addLines(60);
    stage.update();
    QCOMPARE(stage.toEnd(), 0);
    stage.inputs.content = TranscriptContent::original;
    stage.update();
    QVERIFY(stage.bar()->maximum() > 0);
    QCOMPARE(stage.toEnd(), 0);
    QVERIFY(stage.view.atBottom());
  }

  void staysInPlaceWithoutFollowing() {
    Stage stage;
    stage.inputs.followsLatest = false;
    stage.addLines(50);
    stage.update();
    QCOMPARE(stage.bar()->value(), 0);
  }

  void atBottomHasAToleranceOfTwentyFourPoints() {
    Stage stage;
    stage.addLines(50);
    stage.update();
    QSignalSpy spy(&stage.view, &TranscriptView::atBottomChanged);
    stage.bar()->setValue(stage.bar()->maximum() - 24);
    settle();
    QVERIFY(stage.view.atBottom());
    stage.bar()->setValue(stage.bar()->maximum() - 25);
    QVERIFY2(stage.view.atBottom(), "it is written from the event loop");
    settle();
    QVERIFY(!stage.view.atBottom());
    QCOMPARE(spy.count(), 1);
  }

  void scrolledUpViewStaysInPlace() {
    Stage stage;
    stage.addLines(200);
    stage.update();
    stage.bar()->setValue(1500);
    settle();
    const auto before = stage.reading();
    stage.addLines(5);
    stage.inputs.drafts = {{"more"}};
    stage.update(kAdded);
    QCOMPARE(stage.bar()->value(), 1500);
    QCOMPARE(stage.reading(), before);
    // A translation above the view adds height there.
    stage.session.lines[2].translations["ko"] = "둘.";
    stage.update({.lines = TranscriptChange::Lines::one, .index = 2});
    QCOMPARE(stage.reading().first, before.first + 1);
    QCOMPARE(stage.reading().second, before.second);
  }

  void jumpAlwaysScrollsToTheEnd() {
    Stage stage;
    stage.addLines(100);
    stage.update();
    stage.bar()->setValue(0);
    settle();
    ++stage.inputs.jumpToLatest;
    stage.update(kAdded);
    QCOMPARE(stage.toEnd(), 0);
    stage.bar()->setValue(0);
    stage.update(kAdded);
    QCOMPARE(stage.bar()->value(), 0);
  }

  void bottomStaysInViewWhenResized() {
    Stage stage;
    stage.addLines(300);
    stage.update();
    for (const QSize size : {QSize(300, 200), QSize(700, 120), QSize(420, 400)}) {
      stage.view.resize(size);
      QCOMPARE(stage.toEnd(), 0);
      settle();
      QCOMPARE(stage.toEnd(), 0);
    }
    QTRY_COMPARE(stage.toEnd(), 0);
  }

  void visibleTextStaysInViewWhenTheWidthChanges() {
    Stage stage;
    for (int i = 0; i < 200; ++i) {
      stage.session.lines.push_back(lineOf(
          QStringLiteral("Line %1 is long enough to be broken when the view gets narrow.").arg(i)));
    }
    stage.update();
    stage.bar()->setValue(2000);
    settle();
    const int read = stage.view.textView().cursorForPosition(QPoint(30, 5)).blockNumber();
    stage.view.resize(250, 200);
    QCOMPARE(stage.view.textView().cursorForPosition(QPoint(30, 5)).blockNumber(), read);
    const QTextDocument* document = stage.view.textView().document();
    const auto* layout = qobject_cast<TranscriptLayout*>(document->documentLayout());
    QTRY_VERIFY(layout->isLaidOut(document->firstBlock()) &&
                layout->isLaidOut(document->lastBlock()));
    QCOMPARE(stage.view.textView().cursorForPosition(QPoint(30, 5)).blockNumber(), read);
  }
};

QTEST_MAIN(TranscriptScrollingTest)
#include "transcript_scrolling_test.moc"
