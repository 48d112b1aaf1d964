// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/localization.h"
#include "support/suite.h"
#include "ui/caption/caption_header_view.h"
#include "ui/caption/caption_menu.h"
#include "ui/caption/copy_transcript_button.h"
#include "ui/caption/header_state.h"
#include "ui/caption/level_meter.h"
#include "ui/caption/panel_stage.h"
#include "ui/caption/selectable_transcript_text_view.h"
#include "ui/caption/session_save_button.h"
#include "ui/caption/transcript_view.h"
#include "ui/common/language_popup.h"

#include <QAccessible>
#include <QLineEdit>
#include <QSignalSpy>

using namespace velun;
using test::PanelStage;
using test::settle;
using namespace std::chrono_literals;

/// The controls above the captions.
class CaptionHeaderTest final : public test::Suite {
  Q_OBJECT

 private:
  static QStringList textsOf(const QMenu& menu) {
    QStringList texts;
    for (const QAction* action : menu.actions()) {
      if (!action->isSeparator()) texts << action->text();
    }
    return texts;
  }
  /// The menu after its aboutToShow signal.
  static CaptionMenu& opened(CaptionMenu& menu) {
    Q_EMIT menu.aboutToShow();
    return menu;
  }
  static QAction* actionOf(const QMenu& menu, const QString& text) {
    for (QAction* action : menu.actions()) {
      if (action->text() == text) return action;
    }
    return nullptr;
  }
  /// Opens the list of languages by the menu's item, types and presses Enter.
  static void choose(CaptionHeaderView& header, const QString& item, const QString& typed) {
    const CaptionMenu& menu = opened(header.translationMenu());
    LanguagePopup& popup = header.languagePopup();
    QVERIFY(actionOf(menu, item));
    actionOf(menu, item)->trigger();
    QTRY_VERIFY(popup.isVisible());
    auto* search = popup.findChild<QLineEdit*>();
    search->setText(typed);
    QTest::keyClick(search, Qt::Key_Return);
    QVERIFY(!popup.isVisible());
  }

 private Q_SLOTS:
  void buttonsUnderThePointerStayDark_data() {
    QTest::addColumn<bool>("copies");
    QTest::newRow("menu") << false;
    QTest::newRow("copy") << true;
  }
  void buttonsUnderThePointerStayDark() {
    QFETCH(bool, copies);
    PanelStage stage;
    stage.controller->show();
    stage.start();
    stage.final("One.");
    stage.controller->setHeader(true, false);
    settle();
    QToolButton& button = copies
                              ? static_cast<QToolButton&>(stage.view->header().state().copyButton())
                              : stage.view->header().session();
    QVERIFY(button.isEnabled());
    const auto ground = [&button] {
      QImage image(button.size(), QImage::Format_ARGB32_Premultiplied);
      image.fill(Qt::black);
      button.render(&image, QPoint(), QRegion(), {});
      return image.pixelColor(button.width() / 2, 2).lightness();
    };
    QCOMPARE(ground(), 0);
    button.setAttribute(Qt::WA_UnderMouse);
    QVERIFY2(ground() > 10 && ground() < 60, qPrintable(QString::number(ground())));
  }

  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void controlsStandInOrder() {
    PanelStage stage;
    stage.controller->setHeader(true, false);
    const CaptionHeaderView& header = stage.view->header();
    stage.panel().setAttribute(Qt::WA_DontShowOnScreen);
    stage.controller->show();
    settle();
    const std::vector<QWidget*> order = {
        &header.inputSource(), &header.levelMeter(), &header.saveButton(), &header.translation(),
        &header.startStop(),   &header.session(),    &header.hideButton()};
    for (std::size_t i = 1; i < order.size(); ++i) {
      QVERIFY(order[i - 1]->geometry().right() < order[i]->geometry().left());
    }
    QVERIFY(header.translation().x() - header.saveButton().geometry().right() > 50);
    QCOMPARE(header.levelMeter().geometry().size(), QSize(72, 16));
    QCOMPARE(header.height(), 44);
    for (const QWidget* control : {order[0], order[2], order[3], order[4], order[5], order[6]}) {
      QVERIFY(control->width() >= 28 && control->height() >= 28);
      QVERIFY(!control->toolTip().isEmpty());
      QVERIFY(!control->accessibleName().isEmpty());
    }
  }

  void startAndStop() {
    PanelStage stage;
    HeaderButton& button = stage.view->header().startStop();
    QCOMPARE(button.symbol(), QString("play.fill"));
    QCOMPARE(button.accessibleName(), QString("Start Captions"));
    button.click();
    settle();
    QCOMPARE(stage.asked, QStringList{"toggle-captions"});
    QCOMPARE(button.symbol(), QString("pause.fill"));
    QCOMPARE(button.accessibleName(), QString("Stop Captions"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(button.accessibleName(), QString("자막 중지"));
    button.click();
    settle();
    QCOMPARE(button.accessibleName(), QString("자막 시작"));
  }

  void startStopShowsASwitch() {
    PanelStage stage;
    const HeaderButton& button = stage.view->header().startStop();
    stage.engine->holdsStarts = true;
    stage.start();
    QVERIFY(!button.isEnabled());
    QCOMPARE(button.accessibleName(), QString("Switching Captions…"));
    QCOMPARE(button.toolTip(), QString("Switching Captions…"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(button.accessibleName(), QString("자막 전환 중…"));
    Localization::shared().setLanguage(AppLanguage::english);
    stage.engine->release();
    settle();
    QVERIFY(button.isEnabled());
    QCOMPARE(button.accessibleName(), QString("Stop Captions"));
  }

  void startStopCancelsADownload() {
    PanelStage stage;
    HeaderButton& button = stage.view->header().startStop();
    stage.engine->holdsStarts = true;
    stage.engine->downloads = true;
    button.click();
    settle();
    QVERIFY(button.isEnabled());
    QCOMPARE(button.symbol(), QString("pause.fill"));
    QCOMPARE(button.accessibleName(), QString("Stop Captions"));
    button.click();
    QVERIFY(!button.isEnabled());
    settle();
    QVERIFY(button.isEnabled());
    QCOMPARE(button.accessibleName(), QString("Start Captions"));
    QVERIFY(!stage.model->isRunning());
  }

  void startStopKeepsTheFocusDuringASwitch() {
    PanelStage stage;
    stage.controller->setHeader(true, false);
    stage.controller->show();
    stage.panel().activateWindow();
    HeaderButton& button = stage.view->header().startStop();
    button.setFocus();
    QTRY_VERIFY(button.hasFocus());
    stage.engine->holdsStarts = true;
    QTest::keyClick(&button, Qt::Key_Space);
    settle();
    QVERIFY(!button.isEnabled() && button.hasFocus());
    const QAccessible::State state = QAccessible::queryAccessibleInterface(&button)->state();
    QVERIFY(state.disabled && state.focused);
    QTest::keyClick(stage.panel().windowHandle(), Qt::Key_Space);
    QCOMPARE(stage.asked, QStringList{"toggle-captions"});
    stage.engine->release();
    settle();
    QVERIFY(button.isEnabled() && button.hasFocus());
    stage.engine->holdsStops = true;
    QTest::keyClick(&button, Qt::Key_Space);
    settle();
    QTest::keyClick(stage.panel().windowHandle(), Qt::Key_Tab);
    QVERIFY(stage.view->header().session().hasFocus());
    QTest::keyClick(stage.panel().windowHandle(), Qt::Key_Tab, Qt::ShiftModifier);
    stage.engine->release();
    settle();
  }

  void hideButtonTellsHowToReopen() {
    PanelStage stage;
    stage.controller->show();
    HeaderButton& button = stage.view->header().hideButton();
    QCOMPARE(button.accessibleName(), QString("Hide"));
    QCOMPARE(button.toolTip(), QString("You can reopen the caption window from the status icon"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(button.accessibleName(), QString("숨기기"));
    QCOMPARE(button.toolTip(), QString("상태 아이콘에서 자막 창을 다시 열 수 있습니다"));
    button.click();
    QVERIFY(!stage.controller->isShown());
  }

  void inputCanBeChosen() {
    PanelStage stage;
    CaptionHeaderView& header = stage.view->header();
    QCOMPARE(header.inputSource().accessibleName(), QString("Input Source"));
    QCOMPARE(header.inputSource().symbol(), QString("speaker.wave.2.fill"));
    const QMenu& menu = opened(header.inputSourceMenu());
    QCOMPARE(textsOf(menu),
             (QStringList{"Computer Audio", "Microphone", "Computer and Microphone"}));
    QVERIFY(menu.actions()[0]->isChecked());
    menu.actions()[1]->trigger();
    QVERIFY(stage.settings.useMic());
    QCOMPARE(header.inputSource().symbol(), QString("mic.fill"));
    opened(header.inputSourceMenu()).actions()[2]->trigger();
    QCOMPARE(stage.settings.inputChoice(), InputChoice::both);
    QCOMPARE(header.inputSource().symbol(), QString("mic.and.speaker"));
    QCOMPARE(header.inputSource().accessibleDescription(), QString("Computer and Microphone"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(textsOf(opened(header.inputSourceMenu())),
             (QStringList{"컴퓨터 오디오", "마이크", "컴퓨터와 마이크"}));
    QCOMPARE(header.inputSource().toolTip(), QString("입력 소스"));
  }

  void translationCanBeSetUp() {
    PanelStage stage;
    stage.locales = {"en_US", "ko_KR"};
    stage.languages = {"es", "ko"};
    stage.tasks.push_back(stage.model->loadLanguages());
    settle();
    CaptionHeaderView& header = stage.view->header();
    QCOMPARE(header.translation().accessibleName(), QString("Translation Settings"));
    const CaptionMenu& menu = opened(header.translationMenu());
    QCOMPARE(textsOf(menu),
             (QStringList{"Turn On Translation", "Input Language…\tEnglish (United States)",
                          "Translation Language…\tKorean", "Show Translation Only"}));
    actionOf(menu, "Turn On Translation")->trigger();
    QVERIFY(stage.settings.translate());
    QCOMPARE(header.translation().accessibleName(), QString("Translation on · Korean"));
    QCOMPARE(header.translation().toolTip(), QString("Translation Settings"));
    choose(header, "Translation Language…\tKorean", "Spanish");
    QCOMPARE(stage.settings.targetID(), QString("es"));
    QCOMPARE(header.translation().accessibleName(), QString("Translation on · Spanish"));
    choose(header, "Input Language…\tEnglish (United States)", "한국");
    QCOMPARE(stage.settings.localeID(), QString("ko_KR"));
    actionOf(menu, "Show Translation Only")->trigger();
    QVERIFY(stage.settings.showTranslationOnly());
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(textsOf(opened(header.translationMenu())),
             (QStringList{"번역 켜기", "입력 언어…\t한국어(대한민국)", "번역 언어…\t스페인어",
                          "번역만 보기"}));
    QCOMPARE(header.translation().accessibleName(), QString("번역 켜짐 · 스페인어"));
  }

  void theHeaderStaysWhileTheListOfLanguagesIsOpen() {
    PanelStage stage;
    stage.locales = {"en_US", "ko_KR"};
    stage.languages = {"es", "ko"};
    stage.tasks.push_back(stage.model->loadLanguages());
    settle();
    CaptionHeaderView& header = stage.view->header();
    QSignalSpy tracking(&header, &CaptionHeaderView::menuTrackingChanged);
    actionOf(opened(header.translationMenu()), "Translation Language…\tKorean")->trigger();
    QTRY_VERIFY(header.languagePopup().isVisible());
    QCOMPARE(tracking.last().value(0).toBool(), true);
    header.languagePopup().hide();
    QCOMPARE(tracking.last().value(0).toBool(), false);
    QCOMPARE(stage.settings.targetID(), QString("ko"));
  }

  void sessionMenuActsOnTheCurrentSession() {
    PanelStage stage;
    CaptionHeaderView& header = stage.view->header();
    QCOMPARE(header.session().accessibleName(), QString("Session & Settings"));
    QVERIFY(!opened(header.sessionMenu()).actions()[0]->isEnabled());
    stage.final("One.");
    const CaptionMenu& menu = opened(header.sessionMenu());
    QCOMPARE(textsOf(menu), (QStringList{"Save Current Session", "Saved Sessions…", "Export…",
                                         "New Session", "Settings…"}));
    for (QAction* action : menu.actions()) action->trigger();
    QCOMPARE(stage.asked,
             (QStringList{"show-history", "export-session", "new-session", "show-settings"}));
    QCOMPARE(stage.files().size(), 1);
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(textsOf(opened(header.sessionMenu())),
             (QStringList{"현재 세션 저장", "저장 기록…", "내보내기…", "새 세션", "설정…"}));
  }

  void withoutAStatusIconItsCommandsAreInTheSessionMenu() {
    PanelStage stage;
    CaptionHeaderView& header = stage.view->header();
    QVERIFY(header.hideButton().toolTip().contains("status icon"));
    stage.hasStatusIcons = false;
    stage.commands.refresh();
    QVERIFY(!header.hideButton().toolTip().contains("status icon"));
    const CaptionMenu& menu = opened(header.sessionMenu());
    QCOMPARE(textsOf(menu).mid(5),
             (QStringList{"Click Through Captions", "Restore Default Position",
                          "Check for Updates…", "Quit Velun"}));
    menu.actions().last()->trigger();
    QCOMPARE(stage.asked, QStringList{"quit"});
  }

  void saveButtonFollowsTheFile() {
    PanelStage stage;
    SessionSaveButton& button = stage.view->header().saveButton();
    QVERIFY(!button.saved());
    QCOMPARE(button.symbol(), QString("square.and.arrow.down"));
    QCOMPARE(button.accessibleName(), QString("Save Current Session"));
    stage.final("One.");
    stage.breakStore();
    button.click();
    QVERIFY(!button.saved());
    QCOMPARE(button.toolTip(), QString("Retry Save"));
    QCOMPARE(button.accessibleName(), QString("Save Current Session"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(button.toolTip(), QString("저장 재시도"));
    QCOMPARE(button.accessibleName(), QString("현재 세션 저장"));
    Localization::shared().setLanguage(AppLanguage::english);
    stage.repairStore();
    button.click();
    QVERIFY(button.saved());
    QCOMPARE(button.symbol(), QString("checkmark.circle"));
    QCOMPARE(button.accessibleName(), QString("View Saved Sessions"));
    QCOMPARE(button.toolTip(), QString("Session saved · View saved sessions"));
    button.click();
    QCOMPARE(stage.asked, QStringList{"show-history"});
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(button.accessibleName(), QString("저장 기록 보기"));
    QCOMPARE(button.toolTip(), QString("세션 저장됨 · 기록 보기"));
  }

  void openMenuKeepsTheHeader() {
    PanelStage stage;
    stage.view->setHovering(true);
    Q_EMIT stage.view->header().sessionMenu().aboutToShow();
    stage.view->setHovering(false);
    stage.clock.advance(10s);
    QVERIFY(stage.controller->headerShown());
    Q_EMIT stage.view->header().sessionMenu().aboutToHide();
    stage.clock.advance(1499ms);
    QVERIFY(stage.controller->headerShown());
    stage.clock.advance(1ms);
    QVERIFY(!stage.controller->headerShown());
  }

  void theTabKeyReachesTheHeaderAlsoBehindOtherButtons() {
    PanelStage stage;
    stage.controller->show();
    stage.panel().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&stage.panel()));
    stage.start();
    stage.failure("It has failed.");
    const CaptionHeaderView& header = stage.view->header();
    const auto tab = [] {
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    };
    for (int i = 0; i < 5 && !header.inputSource().hasFocus(); ++i) tab();
    QVERIFY(header.inputSource().hasFocus());
    for (int i = 0; i < 10 && !stage.view->transcript().textView().hasFocus(); ++i) tab();
    QVERIFY(stage.view->transcript().textView().hasFocus());
  }

  void focusReturnsToTheHeaderFromItsMenus() {
    PanelStage stage;
    stage.controller->show();
    stage.panel().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&stage.panel()));
    QTest::keyClick(&stage.view->transcript().textView(), Qt::Key_Tab);
    const CaptionHeaderView& header = stage.view->header();
    QVERIFY(header.inputSource().hasFocus());
    CaptionMenu& menu = header.inputSourceMenu();
    QTest::ignoreMessage(QtWarningMsg, "This plugin does not support grabbing the keyboard");
    menu.popup({});
    QTest::keyClick(&menu, Qt::Key_Down);
    QVERIFY(menu.hasFocus());
    QTest::keyClick(&menu, Qt::Key_Escape);
    QVERIFY(!menu.isVisible());
    // A window manager would have left the focus in the panel.
    stage.panel().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&stage.panel()));
    QVERIFY(header.inputSource().hasFocus());
    stage.clock.advance(10s);
    QVERIFY(header.inputSource().isVisible());
    QVERIFY(header.inputSource().hasFocus());
  }

  void screenReaderFocusShowsTheHeader() {
    PanelStage stage;
    stage.controller->show();
    stage.panel().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&stage.panel()));
    HeaderButton& button = stage.view->header().startStop();
    QVERIFY(!button.isVisible());
    QAccessible::queryAccessibleInterface(&button)->actionInterface()->doAction(
        QAccessibleActionInterface::setFocusAction());
    QVERIFY(button.isVisible());
    QVERIFY(button.hasFocus());
    stage.clock.advance(10s);
    QVERIFY(button.isVisible());
    stage.view->transcript().textView().setFocus();
    stage.clock.advance(10s);
    QVERIFY(!button.isVisible());
  }
};

QTEST_MAIN(CaptionHeaderTest)
#include "caption_header_test.moc"
