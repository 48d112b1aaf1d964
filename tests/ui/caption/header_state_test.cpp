// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/header_state.h"

#include "language/localization.h"
#include "support/suite.h"
#include "ui/caption/caption_header_view.h"
#include "ui/caption/copy_transcript_button.h"
#include "ui/caption/header_state_icon.h"
#include "ui/caption/panel_stage.h"
#include "ui/caption/transcript_view.h"

#include <private/qguiapplication_p.h>
#include <QAccessible>
#include <QApplication>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>
#include <utility>

using namespace velun;
using test::PanelStage;

namespace {

int renamings = 0;

void countRenamings(QAccessibleEvent* event) {
  if (event->type() == QAccessible::NameChanged) ++renamings;
}

}  // namespace

class HeaderStateTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void neverCoversWords() {
    const PanelStage stage;
    stage.panel().setAttribute(Qt::WA_DontShowOnScreen);
    stage.controller->show();
    const HeaderState& state = stage.view->header().state();
    QVERIFY(!state.isVisible());
    stage.view->setHovering(true);
    QVERIFY(state.copyButton().isVisible());
    QVERIFY(state.keptOnTop().isVisible());
    for (const QSize& size : {QSize(560, 294), stage.panel().minimumSize()}) {
      stage.panel().resize(size);
      const QRect shown(state.mapTo(stage.view, QPoint()), state.size());
      QVERIFY(!shown.intersects(stage.view->transcript().geometry()));
      QVERIFY(stage.view->rect().contains(shown));
    }
  }

  void copyingIsReachedWithTheKeyboard() {
    PanelStage stage;
    stage.start();
    stage.final("One.");
    stage.controller->show();
    stage.panel().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&stage.panel()));
    const CopyTranscriptButton& copy = stage.view->header().state().copyButton();
    for (int i = 0; i < 12 && !copy.hasFocus(); ++i) {
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QVERIFY(copy.hasFocus());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QVERIFY(copy.copied());
  }

  void draftsTellScreenReadersOfNoNewNames() {
    PanelStage stage;
    stage.start();
    renamings = 0;
    QPlatformAccessibility* reader = QGuiApplicationPrivate::platformIntegration()->accessibility();
    reader->setActive(true);
    const auto before = QAccessible::installUpdateHandler(countRenamings);
    stage.draft("One");
    stage.draft("One two");
    QCOMPARE(renamings, 0);
    Localization::shared().setLanguage(AppLanguage::korean);
    QVERIFY(renamings > 0);
    QAccessible::installUpdateHandler(before);
    reader->setActive(false);
    QVERIFY(stage.view->header().state().copyButton().isEnabled());
  }

  void refreshedCommandsTellScreenReadersOfNoNewNames() {
    PanelStage stage;
    QPlatformAccessibility* reader = QGuiApplicationPrivate::platformIntegration()->accessibility();
    reader->setActive(true);
    const auto before = QAccessible::installUpdateHandler(countRenamings);
    renamings = 0;
    stage.commands.refresh();
    const int again = std::exchange(renamings, 0);
    Localization::shared().setLanguage(AppLanguage::korean);
    const int translated = renamings;
    QAccessible::installUpdateHandler(before);
    reader->setActive(false);
    QCOMPARE(again, 0);
    QVERIFY(translated > 0);
  }

  void showTheWindowState() {
    PanelStage stage;
    const HeaderState& state = stage.view->header().state();
    QVERIFY(state.keptOnTop().isVisibleTo(&state));
    QVERIFY(!state.hiddenFromSharing().isVisibleTo(&state));
    stage.settings.setKeepOnTop(false);
    stage.settings.setHideFromScreenSharing(true);
    QVERIFY(!state.keptOnTop().isVisibleTo(&state));
    QVERIFY(state.hiddenFromSharing().isVisibleTo(&state));
    QCOMPARE(state.keptOnTop().size(), QSize(22, 22));
  }

  void thePinSaysWhenTheDesktopKeepsNoWindowAbove() {
    PanelStage stage;
    const HeaderState& overlays = stage.view->header().state();
    QCOMPARE(overlays.keptOnTop().accessibleName(), QStringLiteral("Kept above other windows"));
    stage.desktop.setCapabilities({.keepsOnTop = false, .hidesPlaces = true});
    QCOMPARE(overlays.keptOnTop().accessibleName(),
             QStringLiteral("This desktop cannot keep the window above others"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(overlays.keptOnTop().accessibleName(),
             QStringLiteral("이 데스크톱에서는 이 창을 다른 창 위에 둘 수 없습니다"));
    stage.desktop.setCapabilities({.keepsOnTop = true, .hidesPlaces = true});
    QCOMPARE(overlays.keptOnTop().accessibleName(), QStringLiteral("다른 창 위에 표시 중"));
  }

  void hidingIconSaysWhatTheDesktopCanDoNow_data() {
    QTest::addColumn<CaptureHiding>("hiding");
    QTest::addColumn<bool>("readsWithoutCast");
    QTest::addColumn<QString>("symbol");
    QTest::addColumn<QString>("english");
    QTest::addColumn<QString>("korean");
    QTest::newRow("excluded by the compositor") << CaptureHiding::compositor << false << "eye.slash"
                                                << "Hidden from screen sharing"
                                                << "화면 공유에서 숨김";
    QTest::newRow("hidden while casting on Wayland")
        << CaptureHiding::whileCasting << false << "eye.slash"
        << "Hidden while the screen is shared"
        << "화면을 공유하는 동안 숨김";
    QTest::newRow("hidden while casting on X11") << CaptureHiding::whileCasting << true << "eye"
                                                 << "May be visible in screen sharing"
                                                 << "화면 공유에 보일 수 있음";
    for (const bool onX11 : {false, true}) {
      QTest::newRow(onX11 ? "nothing hides it on X11" : "nothing hides it on Wayland")
          << CaptureHiding::none << onX11 << "eye"
          << "Visible in screen sharing"
          << "화면 공유에 보임";
    }
  }
  void hidingIconSaysWhatTheDesktopCanDoNow() {
    QFETCH(CaptureHiding, hiding);
    QFETCH(bool, readsWithoutCast);
    QFETCH(QString, symbol);
    QFETCH(QString, english);
    QFETCH(QString, korean);
    PanelStage stage([](AppSettings& settings) { settings.setHideFromScreenSharing(true); });
    DesktopCapabilities can;
    can.captureHiding = hiding;
    can.readsWithoutCast = readsWithoutCast;
    stage.desktop.setCapabilities(can);
    const HeaderStateIcon& icon = stage.view->header().state().hiddenFromSharing();
    QCOMPARE(icon.symbol(), symbol);
    QCOMPARE(icon.toolTip(), english);
    QCOMPARE(icon.accessibleName(), english);
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(icon.toolTip(), korean);
  }
};

QTEST_MAIN(HeaderStateTest)
#include "header_state_test.moc"
