// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/transcript_view.h"

#include "language/localization.h"
#include "support/suite.h"
#include "ui/caption/pending_indicator.h"
#include "ui/caption/selectable_transcript_text_view.h"
#include "ui/caption/transcript_stage.h"
#include "ui/common/find_bar.h"

#include <private/qguiapplication_p.h>
#include <QAccessible>
#include <QLabel>
#include <QLineEdit>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>
#include <QSignalSpy>

using namespace velun;
using test::kAdded;
using test::lineOf;
using test::settle;
using Stage = test::TranscriptStage;

class TranscriptViewTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void textNeverEndsInALineBreak() {
    Stage stage;
    stage.addLines(2);
    stage.inputs.drafts = {{"draft"}};
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

  void selectionHoldsBackNewTextUntilItEnds() {
    Stage stage;
    stage.addLines(3);
    stage.update();
    stage.select(2, 8);
    const QString before = stage.text();
    stage.inputs.drafts = {{"new"}};
    stage.update(kAdded);
    stage.addLines(1);
    stage.inputs.drafts = {{"newer"}};
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
    stage.inputs.drafts = {{"new"}};
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
    stage.inputs.drafts = {{"new"}};
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
    stage.inputs.drafts = {{"a long draft"}};
    stage.update();
    stage.select(28, 28);
    stage.inputs.drafts.clear();
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
    stage.inputs.drafts = {{"one two"}};
    stage.update();
    const QSignalSpy spy(stage.view.textView().document(), &QTextDocument::contentsChange);
    stage.inputs.drafts = {{"one two three"}};
    stage.update(kAdded);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy[0][1].toInt(), 0);
    QCOMPARE(spy[0][2].toInt(), 6);
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
