// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/caption_view.h"

#include "language/localization.h"
#include "support/suite.h"
#include "ui/caption/caption_header_view.h"
#include "ui/caption/caption_menu.h"
#include "ui/caption/caption_status_line.h"
#include "ui/caption/copy_transcript_button.h"
#include "ui/caption/header_state.h"
#include "ui/caption/jump_button.h"
#include "ui/caption/panel_stage.h"
#include "ui/caption/selectable_transcript_text_view.h"
#include "ui/caption/transcript_view.h"

#include <private/qguiapplication_p.h>
#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>
#include <QScrollBar>
#include <QSignalSpy>

using namespace velun;
using test::PanelStage;
using test::settle;
using namespace std::chrono_literals;

class CaptionViewTest final : public test::Suite {
  Q_OBJECT

 private:
  static QString shown(const PanelStage& stage) {
    settle();
    return stage.view->transcript().textView().document()->toPlainText();
  }

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void textMenuLooksLikeTheHeaderMenus() {
    PanelStage stage;
    const std::unique_ptr<QMenu> menu = stage.view->transcript().textView().contextMenu();
    QVERIFY(qobject_cast<CaptionMenu*>(menu.get()));
    QStringList texts;
    for (const QAction* action : menu->actions()) {
      if (!action->isSeparator()) texts << action->text();
    }
    QCOMPARE(texts, (QStringList{"Copy", "Select All", "Find…"}));
    const TranscriptView elsewhere;
    QVERIFY(!qobject_cast<CaptionMenu*>(elsewhere.textView().contextMenu().get()));
  }

  void aSpeakerIsShownAndNamedByAClickOnTheLabel() {
    PanelStage stage;
    stage.start();
    FinalEvent event{"Good morning.", "en_US"};
    event.voice = VoicePrint{.values = {1}, .seconds = 4};
    stage.recognizer->emitEvent(event);
    stage.final("Yes.");
    QCOMPARE(shown(stage), QString("Speaker 1?: Good morning.\nYes."));
    const QSignalSpy namings(stage.view, &CaptionView::speakerNaming);
    SelectableTranscriptTextView& view = stage.view->transcript().textView();
    const auto click = [&view](const QString& text) {
      QTextCursor cursor = view.document()->find(text);
      cursor.setPosition(cursor.selectionStart() + 2);
      QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.cursorRect(cursor).center());
    };
    click("morning");
    click("Yes");
    QCOMPARE(namings.count(), 0);
    click("Speaker");
    QCOMPARE(namings.count(), 1);
    QCOMPARE(namings[0][0].toString(), QString("1"));
    stage.model->renameSpeaker("1", "Anna");
    QCOMPARE(shown(stage), QString("Anna: Good morning.\nYes."));
  }

  void transcriptFollowsTheModel() {
    PanelStage stage;
    stage.start();
    stage.final("One. Two.");
    stage.draft("and th");
    QCOMPARE(shown(stage), QString("One.\nTwo.\nand th"));
    stage.draft("and three");
    stage.final("And three.");
    QCOMPARE(shown(stage), QString("One.\nTwo.\nAnd three."));
  }

  void translationsArriveInTheTranscript() {
    PanelStage stage;
    stage.translation.translate = [](const QString& text) {
      return text.toUpper();
    };
    stage.start();
    stage.final("One.");
    stage.settings.setTranslate(true);
    settle();
    QCOMPARE(stage.translation.scripts.size(), 1U);
    QCOMPARE(stage.translation.scripts[0]->target, QString("ko"));
    stage.final("Two.");
    QCOMPARE(shown(stage), QString("One.\nONE.\nTwo.\nTWO."));
    stage.settings.setTargetID("es");
    settle();
    QCOMPARE(stage.translation.scripts.size(), 2U);
    QVERIFY(!stage.translation.scripts[0]->isOpen);
    stage.settings.setTranslate(false);
    QCOMPARE(shown(stage), QString("One.\nTwo."));
    QVERIFY(!stage.translation.scripts[1]->isOpen);
  }

  void translationModeShowsTheListeningPlaceholder() {
    PanelStage stage;
    stage.start();
    stage.settings.setTranslate(true);
    stage.settings.setShowTranslationOnly(true);
    stage.draft("some");
    QCOMPARE(shown(stage), QString(" "));
    stage.final("Some words.");
    stage.draft("more");
    QCOMPARE(shown(stage), QString(" \n "));
  }

  void fontSizeFollowsTheSetting() {
    PanelStage stage;
    stage.final("One.");
    stage.settings.setFontSize(24);
    settle();
    QTextCursor cursor(stage.view->transcript().textView().document());
    cursor.movePosition(QTextCursor::NextCharacter);
    QCOMPARE(cursor.charFormat().fontPointSize(), 18.0);
  }

  void jumpButtonScrollsToTheEnd() {
    PanelStage stage;
    for (int i = 0; i < 60; ++i) stage.final(QStringLiteral("Line %1.").arg(i));
    stage.panel().setAttribute(Qt::WA_DontShowOnScreen);
    stage.controller->show();
    settle();
    JumpButton& button = stage.view->jumpButton();
    QCOMPARE(button.accessibleName(), QString("Jump to Latest Caption"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(button.accessibleName(), QString("최신 자막으로 이동"));
    settle();
    QVERIFY(!button.isWanted());
    QScrollBar* bar = stage.view->transcript().textView().verticalScrollBar();
    bar->setValue(0);
    settle();
    QVERIFY(button.isWanted());
    QTRY_VERIFY(button.isVisible());
    button.click();
    settle();
    QCOMPARE(bar->value(), bar->maximum());
    QVERIFY(!button.isWanted());
    QTRY_VERIFY(!button.isVisible());
  }

  void jumpButtonShowsHeldText() {
    PanelStage stage;
    stage.final("One.");
    settle();
    stage.view->transcript().textView().selectAll();
    stage.final("Two.");
    settle();
    QVERIFY(stage.view->jumpButton().isWanted());
    stage.view->jumpButton().click();
    QCOMPARE(shown(stage), QString("One.\nTwo."));
    QVERIFY(!stage.view->jumpButton().isWanted());
  }

  void everyAnnouncedTextIsShown() {
    PanelStage stage;
    const CaptionStatusLine& line = stage.view->statusLine();
    QCOMPARE(line.neededHeight(500), 0);
    stage.status(QString("Downloading speech model…"));
    QCOMPARE(line.text(), QString("Downloading speech model…"));
    QVERIFY(line.neededHeight(500) > 0);
    stage.settings.setTargetID("en");
    stage.settings.setTranslate(true);
    QCOMPARE(line.text().count(u'\n'), 1);
    QVERIFY(line.text().endsWith("so the original is shown."));
    Localization::shared().setLanguage(AppLanguage::korean);
    QVERIFY(line.text().endsWith("원문을 표시합니다."));
    stage.settings.setTargetID("ko");
    stage.translation.setActivity(QString("Downloading translation model…"));
    QVERIFY(line.text().endsWith("Downloading translation model…"));
    stage.status(std::nullopt);
    stage.translation.setActivity(std::nullopt);
    QVERIFY(line.text().isEmpty());
  }

  void aDownloadThatFailedIsNotShownAsRunning() {
    PanelStage stage;
    stage.settings.setTargetID("ko");
    stage.settings.setTranslate(true);
    stage.start();
    stage.final("One. Two.");
    settle();
    const CaptionStatusLine& line = stage.view->statusLine();
    stage.translation.setActivity(QString("Downloading translation model…"));
    QCOMPARE(line.text(), QString("Downloading translation model…"));
    const auto& requests = stage.translationScript().requests;
    requests[0].fail("No connection.");
    settle();
    // The second line tries again.
    QCOMPARE(line.text(), QString("Translation error: No connection."));
    requests[1].succeed("둘.");
    stage.translation.setActivity(std::nullopt);
    settle();
    QVERIFY(line.text().isEmpty());
  }

  void screenReadersAnnounceEachTextOnce() {
    static QStringList heard;
    heard.clear();
    PanelStage stage;
    stage.controller->show();
    QCOMPARE(QAccessible::queryAccessibleInterface(&stage.view->statusLine())->role(),
             QAccessible::Notification);
    QPlatformAccessibility* reader = QGuiApplicationPrivate::platformIntegration()->accessibility();
    reader->setActive(true);
    QAccessible::installUpdateHandler([](QAccessibleEvent* event) {
      QAccessibleInterface* shown = event->accessibleInterface();
      if (event->type() != QAccessible::ObjectShow || !shown->isValid()) return;
      if (shown->role() == QAccessible::Notification)
        heard << shown->text(QAccessible::Description);
    });
    stage.status(QString("Downloading speech model…"));
    stage.status(QString("Recognition is falling behind"));
    stage.status(QString("Recognition is falling behind"));
    stage.status(std::nullopt);
    QAccessible::installUpdateHandler(nullptr);
    reader->setActive(false);
    QCOMPARE(heard, (QStringList{"Downloading speech model…", "Recognition is falling behind"}));
  }

  void copyButtonCopiesTheTranscript() {
    PanelStage stage;
    stage.start();
    stage.final("One.");
    stage.draft("two");
    CopyTranscriptButton& button = stage.view->header().state().copyButton();
    QCOMPARE(button.accessibleName(), QString("Copy All"));
    button.click();
    QCOMPARE(QApplication::clipboard()->text(), QString("One.\n\ntwo"));
    QVERIFY(button.copied());
    QCOMPARE(button.accessibleName(), QString("Copied"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(button.accessibleName(), QString("복사됨"));
    stage.clock.advance(1999ms);
    QVERIFY(button.copied());
    stage.clock.advance(1ms);
    QVERIFY(!button.copied());
    QCOMPARE(button.accessibleName(), QString("전체 복사"));
  }
};

QTEST_MAIN(CaptionViewTest)
#include "caption_view_test.moc"
