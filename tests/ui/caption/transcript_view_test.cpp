// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/transcript_view.h"

#include "language/localization.h"
#include "support/settle.h"
#include "support/suite.h"
#include "ui/caption/pending_indicator.h"
#include "ui/caption/selectable_transcript_text_view.h"
#include "ui/caption/transcript_layout.h"
#include "ui/caption/transcript_samples.h"
#include "ui/common/find_bar.h"

#include <private/qguiapplication_p.h>
#include <QAccessible>
#include <QLabel>
#include <QLineEdit>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTextBlock>

using namespace velun;
using test::lineOf;
using test::SeenDocument;
using test::settle;

class TranscriptViewTest final : public test::Suite {
  Q_OBJECT

 private:
  struct Stage {
    Stage() {
      inputs.session = &session;
      inputs.followsLatest = true;
      inputs.captionStyle = true;
      inputs.language = "ko";
      view.resize(400, 200);
      view.show();
    }
    void addLines(int count) {
      for (int i = 0; i < count; ++i) {
        session.lines.push_back(lineOf(QStringLiteral("Line %1 of many.").arg(i)));
      }
    }
    void update(const TranscriptChange& change = {}) {
      view.update(inputs, change);
      settle();
    }
    QString text() const { return view.textView().document()->toPlainText(); }
    QScrollBar* bar() const { return view.textView().verticalScrollBar(); }
    int toEnd() const { return bar()->maximum() - bar()->value(); }
    /// The block of a line near the top of the view, and its y position.
    std::pair<int, int> reading() const {
      const QTextCursor cursor = view.textView().cursorForPosition(QPoint(30, 60));
      return {cursor.blockNumber(), view.textView().cursorRect(cursor).top()};
    }
    void select(int from, int to) {
      QTextCursor cursor(view.textView().document());
      cursor.setPosition(from);
      cursor.setPosition(to, QTextCursor::KeepAnchor);
      view.textView().setTextCursor(cursor);
    }

    CaptionSession session;
    TranscriptInputs inputs;
    TranscriptView view;
  };

  static constexpr TranscriptChange kAdded{.lines = TranscriptChange::Lines::added};

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void textNeverEndsInALineBreak() {
    Stage stage;
    stage.addLines(2);
    stage.inputs.volatileText = "draft";
    stage.update();
    QCOMPARE(stage.text(), QString("Line 0 of many.\nLine 1 of many.\ndraft"));
  }

  void textIsSelectableButReadOnly() {
    Stage stage;
    stage.update();
    const SelectableTranscriptTextView& text = stage.view.textView();
    QVERIFY(text.isReadOnly());
    QCOMPARE(text.accessibleName(), QString("Caption Text"));
    QCOMPARE(text.verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(text.accessibleName(), QString("자막 본문"));
  }

  void foreignChangesAreReverted() {
    Stage stage;
    stage.addLines(3);
    stage.update();
    const QString shown = stage.text();
    QAccessibleInterface* text = QAccessible::queryAccessibleInterface(&stage.view.textView());
    QVERIFY(text->editableTextInterface());
    text->editableTextInterface()->replaceText(3, text->textInterface()->characterCount(), "x");
    QVERIFY(stage.text() != shown);
    QTRY_COMPARE(stage.text(), shown);
    // Before the queued repair has run.
    text->editableTextInterface()->deleteText(0, text->textInterface()->characterCount());
    stage.addLines(1);
    stage.update(kAdded);
    QCOMPARE(stage.text(), shown + "\nLine 0 of many.");
    settle();
    QCOMPARE(stage.text(), shown + "\nLine 0 of many.");
  }

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
    stage.inputs.volatileText = "more";
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

  void selectionHoldsBackNewTextUntilItEnds() {
    Stage stage;
    stage.addLines(3);
    stage.update();
    stage.select(2, 8);
    const QString before = stage.text();
    stage.inputs.volatileText = "new";
    stage.update(kAdded);
    stage.addLines(1);
    stage.inputs.volatileText = "newer";
    stage.update(kAdded);
    QCOMPARE(stage.text(), before);
    QVERIFY(stage.view.isHeld());
    QCOMPARE(stage.view.textView().textCursor().selectedText(), QString("ne 0 o"));
    stage.view.clearSelection();
    settle();
    QVERIFY(stage.text().endsWith("newer"));
    QVERIFY(!stage.view.isHeld());
  }

  void newTextWaitsForTheReleaseOfTheMouse() {
    Stage stage;
    stage.addLines(3);
    stage.update();
    QWidget* viewport = stage.view.textView().viewport();
    QTest::mousePress(viewport, Qt::LeftButton, {}, QPoint(30, 20));
    QVERIFY(stage.view.textView().isSelectingText());
    stage.inputs.volatileText = "new";
    stage.update(kAdded);
    QVERIFY(!stage.text().contains("new"));
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, QPoint(30, 20));
    settle();
    QVERIFY(stage.text().endsWith("new"));
  }

  void dragSelectionSurvivesNewText() {
    Stage stage;
    stage.addLines(3);
    stage.update();
    QWidget* viewport = stage.view.textView().viewport();
    QTest::mousePress(viewport, Qt::LeftButton, {}, QPoint(18, 20));
    QTest::mouseMove(viewport, QPoint(60, 20));
    stage.inputs.volatileText = "new";
    stage.update(kAdded);
    QTest::mouseMove(viewport, QPoint(90, 20));
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, QPoint(90, 20));
    settle();
    QVERIFY(stage.view.textView().hasSelection());
    QVERIFY(!stage.text().contains("new"));
    QTest::keyClick(&stage.view.textView(), Qt::Key_Escape);
    settle();
    QVERIFY(stage.text().endsWith("new"));
  }

  void differentSessionReplacesTheTextUnderASelection() {
    Stage stage;
    stage.addLines(3);
    stage.update();
    stage.select(2, 8);
    CaptionSession other;
    other.lines = {lineOf("Elsewhere.")};
    stage.inputs.session = &other;
    stage.update(kAdded);
    QCOMPARE(stage.text(), QString("Elsewhere."));
    QVERIFY(!stage.view.textView().hasSelection());
    QCOMPARE(stage.view.textView().textCursor().position(), 0);
  }

  void cursorIsClampedToAShorterText() {
    Stage stage;
    stage.addLines(1);
    stage.inputs.volatileText = "a long draft";
    stage.update();
    stage.select(28, 28);
    stage.inputs.volatileText.clear();
    stage.update(kAdded);
    QCOMPARE(stage.view.textView().textCursor().position(), 15);
  }

  void equalTextIsNotChanged() {
    Stage stage;
    stage.addLines(3);
    stage.update();
    const QSignalSpy spy(stage.view.textView().document(), &QTextDocument::contentsChange);
    stage.update();
    stage.update(kAdded);
    QCOMPARE(spy.count(), 0);
  }

  void draftChangeEditsOnlyTheDifference() {
    Stage stage;
    stage.addLines(3);
    stage.inputs.volatileText = "one two";
    stage.update();
    const QSignalSpy spy(stage.view.textView().document(), &QTextDocument::contentsChange);
    stage.inputs.volatileText = "one two three";
    stage.update(kAdded);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy[0][1].toInt(), 0);
    QCOMPARE(spy[0][2].toInt(), 6);
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

  void spinnersMarkPlaceholdersInView() {
    Stage stage;
    stage.inputs.content = TranscriptContent::translation;
    stage.addLines(2);
    stage.inputs.pendingTranslationIDs = {stage.session.lines[1].id};
    stage.inputs.showsPendingInput = true;
    stage.update();
    const auto& spinners = stage.view.textView().pendingIndicators();
    QCOMPARE(spinners.size(), 2U);
    QCOMPARE(spinners[0]->accessibleName(), QString("Translating"));
    QCOMPARE(spinners[1]->toolTip(), QString("Listening"));
    QCOMPARE(spinners[0]->x(), 18);
    QCOMPARE(spinners[0]->width(), spinners[0]->height());
    QCOMPARE(spinners[0]->width(), 16);
    QTextCursor at(stage.view.textView().document());
    QVERIFY(std::abs(spinners[0]->geometry().center().y() -
                     stage.view.textView().cursorRect(at).center().y()) <= 1);
    stage.session.lines[1].translations["ko"] = "하나.";
    stage.inputs.pendingTranslationIDs.clear();
    stage.inputs.showsPendingInput = false;
    stage.update({.lines = TranscriptChange::Lines::one, .index = 1});
    QVERIFY(stage.view.textView().pendingIndicators().empty());
    QCOMPARE(stage.text(), QString("하나."));
  }

  void clickOnASpinnerReachesTheText() {
    Stage stage;
    stage.inputs.content = TranscriptContent::translation;
    stage.inputs.showsPendingInput = true;
    stage.update();
    const QWidget* spinner = stage.view.textView().pendingIndicators().at(0);
    const QPoint centre = spinner->mapTo(&stage.view, spinner->rect().center());
    QCOMPARE(stage.view.childAt(centre), stage.view.textView().viewport());
  }

  void onlyPlaceholdersInViewHaveSpinners() {
    Stage stage;
    stage.inputs.content = TranscriptContent::translation;
    stage.addLines(5000);
    for (const Line& line : stage.session.lines) stage.inputs.pendingTranslationIDs.insert(line.id);
    stage.update();
    QVERIFY(!stage.view.textView().pendingIndicators().empty());
    QVERIFY(stage.view.textView().pendingIndicators().size() < 20);
  }

  void rightToLeftTextIsRightAligned() {
    Stage stage;
    stage.session.lines = {lineOf(QStringLiteral("שלום לכולם")), lineOf("Hello.")};
    stage.update();
    QTextCursor start(stage.view.textView().document());
    QVERIFY(stage.view.textView().cursorRect(start).x() > 300);
    start.movePosition(QTextCursor::NextBlock);
    QCOMPARE(stage.view.textView().cursorRect(start).x(), 18);
  }

  void screenReadersAnnounceOnlyNewText() {
    Stage stage;
    stage.addLines(2);
    stage.update();
    static QStringList heard;
    heard.clear();
    QPlatformAccessibility* reader = QGuiApplicationPrivate::platformIntegration()->accessibility();
    reader->setActive(true);
    QAccessible::installUpdateHandler([](QAccessibleEvent* event) {
      if (event->type() == QAccessible::TextInserted) {
        heard << static_cast<QAccessibleTextInsertEvent*>(event)->textInserted();
      } else if (event->type() == QAccessible::TextUpdated ||
                 event->type() == QAccessible::TextRemoved) {
        heard << "changed";
      }
    });
    stage.session.lines.push_back(lineOf("A new one."));
    stage.update(kAdded);
    QAccessible::installUpdateHandler(nullptr);
    reader->setActive(false);
    QCOMPARE(heard.join(u'|').trimmed(), QString("A new one."));
  }

  void findWrapsAround() {
    Stage stage;
    stage.addLines(3);
    stage.update();
    stage.view.openFindBar();
    auto* bar = stage.view.findChild<FindBar*>();
    QVERIFY(bar->isVisible());
    auto* field = bar->findChild<QLineEdit*>();
    QTest::keyClicks(field, "line");
    QCOMPARE(stage.view.textView().textCursor().blockNumber(), 0);
    QTest::keyClick(field, Qt::Key_Return);
    QCOMPARE(stage.view.textView().textCursor().blockNumber(), 1);
    QTest::keyClick(field, Qt::Key_Return, Qt::ShiftModifier);
    QTest::keyClick(field, Qt::Key_Return, Qt::ShiftModifier);
    QCOMPARE(stage.view.textView().textCursor().blockNumber(), 2);
    QTest::keyClick(field, Qt::Key_Escape);
    QVERIFY(!bar->isVisible());
  }

  void notFoundNoticeIsLocalizedAndClearedByTyping() {
    Stage stage;
    stage.addLines(3);
    stage.update();
    stage.view.openFindBar();
    auto* bar = stage.view.findChild<FindBar*>();
    auto* outcome = bar->findChild<QLabel*>();
    QTest::keyClicks(bar->findChild<QLineEdit*>(), "river");
    QCOMPARE(outcome->text(), QString("Not found"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(outcome->text(), QString("찾을 수 없음"));
    Localization::shared().setLanguage(AppLanguage::english);
    QCOMPARE(outcome->text(), QString("Not found"));
    stage.session.lines.push_back(lineOf("A river."));
    stage.update(kAdded);
    QCOMPARE(outcome->text(), QString());
  }
};

QTEST_MAIN(TranscriptViewTest)
#include "transcript_view_test.moc"
