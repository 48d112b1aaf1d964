// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/desktop_services.h"
#include "platform/foundation/system_clock.h"
#include "support/suite.h"
#include "support/virtual_display.h"
#include "ui/caption/caption_header_view.h"
#include "ui/caption/header_button.h"
#include "ui/caption/panel_stage.h"
#include "ui/caption/selectable_transcript_text_view.h"
#include "ui/caption/transcript_view.h"
#include "ui/common/window_presentation.h"

#include <QApplication>
#include <QScreen>
#include <QScrollBar>
#include <QTimer>
#include <QWindow>

using namespace velun;
using test::settle;
using test::VirtualDisplay;
using namespace std::chrono_literals;

/// The panel under a real window manager and compositor, with a real pointer.
class PanelDesktopTest final : public test::Suite {
  Q_OBJECT

 private:
  static QString property(const QWidget& window, const char* name) {
    return VirtualDisplay::run("xprop", {"-id", QString::number(window.windowHandle()->winId()),
                                         QString::fromLatin1(name)});
  }
  static QColor pixelAt(const QPoint& point) {
    const QPixmap shot =
        QGuiApplication::primaryScreen()->grabWindow(0, point.x(), point.y(), 1, 1);
    return shot.toImage().pixelColor(0, 0);
  }
  static bool isPanelAt(const QPoint& point) { return pixelAt(point).lightness() < 60; }
  static void drag(const QPoint& from, const QPoint& by) {
    VirtualDisplay::movePointer(from.x(), from.y());
    VirtualDisplay::pressButton();
    for (int step = 1; step <= 5; ++step) {
      const QPoint to = from + by * step / 5;
      QTest::qWait(40);
      VirtualDisplay::movePointer(to.x(), to.y());
    }
    QTest::qWait(60);
    VirtualDisplay::releaseButton();
    QTest::qWait(60);
  }
  static void showAndPark(const test::PanelStage& stage) {
    VirtualDisplay::movePointer(3, 3);
    stage.controller->show();
    QVERIFY(QTest::qWaitForWindowExposed(&stage.panel()));
    QTRY_VERIFY(isPanelAt(stage.panel().geometry().center() + QPoint(0, 60)));
  }

  /// A bright window over the whole screen.
  struct Other {
    Other() {
      window.setStyleSheet("background: #f0f0f0");
      window.setGeometry(QGuiApplication::primaryScreen()->geometry());
      window.show();
      if (!QTest::qWaitForWindowActive(&window)) qFatal("The other window did not become active");
    }
    QWidget window;
  };

 private Q_SLOTS:
  void initTestCase() {
    desktop_ = makeDesktopPlatform(clock_);
    QVERIFY(desktop_->capabilities().keepsOnTop);
    QVERIFY(desktop_->capabilities().allSpaces);
    QVERIFY(desktop_->capabilities().compositing);
    QVERIFY(desktop_->capabilities().movesByItself);
  }

  void itIsAboveOnEveryDesktopAndInNoTaskList() {
    const test::PanelStage stage({}, desktop_.get());
    for (int showing = 0; showing < 2; ++showing) {
      showAndPark(stage);
      const auto has = [&stage](const char* name, const char* value) {
        return property(stage.panel(), name).contains(value);
      };
      QTRY_VERIFY(has("_NET_WM_STATE", "_NET_WM_STATE_ABOVE"));
      QTRY_VERIFY(has("_NET_WM_STATE", "_NET_WM_STATE_SKIP_TASKBAR"));
      QTRY_VERIFY(has("_NET_WM_DESKTOP", "4294967295"));
      stage.controller->hide();
      QTRY_VERIFY(!stage.panel().isVisible());
    }
  }

  void theLevelChangesWithoutHiding() {
    test::PanelStage stage({}, desktop_.get());
    showAndPark(stage);
    const WId id = stage.panel().windowHandle()->winId();
    Other other;
    const QPoint inside = stage.panel().geometry().center() + QPoint(0, 60);
    other.window.raise();
    QTest::qWait(200);
    QVERIFY(isPanelAt(inside));
    stage.settings.setKeepOnTop(false);
    other.window.raise();
    QTRY_VERIFY(!isPanelAt(inside));
    stage.settings.setKeepOnTop(true);
    QTRY_VERIFY(isPanelAt(inside));
    QCOMPARE(stage.panel().windowHandle()->winId(), id);
  }

  void showingTakesNoFocusButAClickGivesIt() {
    Other other;
    const test::PanelStage stage({}, desktop_.get());
    showAndPark(stage);
    QTest::qWait(200);
    QVERIFY(other.window.isActiveWindow());
    QVERIFY(!stage.panel().isActiveWindow());
    const QPoint inside = stage.panel().geometry().center();
    VirtualDisplay::click(inside.x(), inside.y());
    QTRY_VERIFY(stage.panel().isActiveWindow());
  }

  void theFirstClickOnAnInactivePanelActs() {
    Other other;
    test::PanelStage stage({}, desktop_.get());
    showAndPark(stage);
    QVERIFY(other.window.isActiveWindow());
    VirtualDisplay::movePointer(stage.panel().geometry().center().x(),
                                stage.panel().geometry().center().y());
    QTRY_VERIFY(stage.controller->headerShown());
    const HeaderButton& start = stage.view->header().startStop();
    const QPoint button = start.mapToGlobal(start.rect().center());
    // Once the window has grown on the screen too.
    QTRY_VERIFY(isPanelAt(button - QPoint(0, 19)));
    VirtualDisplay::click(button.x(), button.y());
    QTRY_VERIFY(stage.asked.contains("toggle-captions"));
  }

  void theBottomEdgeStandsStillWhileTheHeaderComesAndGoes() {
    test::PanelStage stage({}, desktop_.get());
    stage.animateHeader();
    showAndPark(stage);
    const QRect frame = stage.panel().geometry();
    const int x = frame.center().x();
    int samples = 0;
    const auto watch = [&] {
      const QImage column =
          QGuiApplication::primaryScreen()->grabWindow(0, x, frame.bottom() - 8, 1, 20).toImage();
      for (int y = 0; y < 8; ++y) QVERIFY(column.pixelColor(0, y).lightness() < 90);
      for (int y = 11; y < 20; ++y) QVERIFY(column.pixelColor(0, y).lightness() > 90);
      ++samples;
    };
    // A busy machine shows few pictures of each movement.
    while (samples <= 10 && !QTest::currentTestFailed()) {
      VirtualDisplay::movePointer(x, frame.center().y());
      while (stage.panel().height() < frame.height() + 44) {
        QTest::qWait(1);
        watch();
      }
      QCOMPARE(stage.panel().geometry().bottom(), frame.bottom());
      VirtualDisplay::movePointer(3, 3);
      QTRY_VERIFY(!stage.view->chrome().hovering());
      stage.clock.advance(1500ms);
      while (stage.panel().height() > frame.height()) {
        QTest::qWait(1);
        watch();
      }
      QCOMPARE(stage.panel().geometry(), frame);
    }
  }

  void theHeaderMovesThePanelAndTheTranscriptDoesNot() {
    test::PanelStage stage({}, desktop_.get());
    showAndPark(stage);
    stage.controller->setHeader(true, false);
    const QRect frame = stage.panel().geometry();
    const QPoint handle(frame.center().x() - 20, frame.top() + 22);
    QTRY_VERIFY(isPanelAt(handle));
    drag(handle, QPoint(-80, -60));
    QTRY_COMPARE(stage.panel().geometry(), frame.translated(-80, -60));
    const QRect moved = stage.panel().geometry();
    drag(moved.center() + QPoint(0, 40), QPoint(50, 30));
    QTest::qWait(100);
    QCOMPARE(stage.panel().geometry(), moved);
  }

  void thePanelIsResizedAtItsEdges() {
    test::PanelStage stage({}, desktop_.get());
    for (int i = 0; i < 80; ++i) stage.final(QStringLiteral("Line %1 of many.").arg(i));
    showAndPark(stage);
    const QRect frame = stage.panel().geometry();
    const QScrollBar* bar = stage.view->transcript().textView().verticalScrollBar();
    drag(frame.bottomRight() - QPoint(2, 2), QPoint(60, 20));
    QTRY_COMPARE(stage.panel().width(), frame.width() + 60);
    QCOMPARE(bar->value(), bar->maximum());
    // The pointer has brought the header, so the top is elsewhere.
    const QRect now = stage.panel().geometry();
    drag(QPoint(now.center().x(), now.top() + 2), QPoint(0, -50));
    QTRY_COMPARE(stage.panel().height(), now.height() + 50);
    QCOMPARE(stage.panel().geometry().bottom(), now.bottom());
    QCOMPARE(bar->value(), bar->maximum());
  }

  void textIsSelectedWhileCaptionsArrive() {
    test::PanelStage stage({}, desktop_.get());
    stage.final("The first sentence is here.");
    showAndPark(stage);
    settle();
    const SelectableTranscriptTextView& text = stage.view->transcript().textView();
    const QPoint start = text.viewport()->mapToGlobal(QPoint(20, 22));
    VirtualDisplay::movePointer(start.x(), start.y());
    VirtualDisplay::pressButton();
    QTRY_VERIFY(text.isSelectingText());
    for (int i = 0; i < 5; ++i) {
      stage.final(QStringLiteral("Another sentence, number %1.").arg(i));
      VirtualDisplay::movePointer(start.x() + 20 * (i + 1), start.y());
      QTest::qWait(30);
    }
    QTRY_VERIFY(text.hasSelection());
    QVERIFY(QString("The first sentence").startsWith(text.textCursor().selectedText()));
    QVERIFY(!text.toPlainText().contains("Another"));
    VirtualDisplay::releaseButton();
    QTRY_VERIFY(!text.isSelectingText());
    VirtualDisplay::click(start.x() + 200, start.y() + 90);
    QTRY_VERIFY(text.toPlainText().endsWith("Another sentence, number 4."));
  }

  void theFrameComesBackAfterARestart() {
    test::MemoryPreferences frames;
    QRect frame;
    {
      test::PanelStage stage({}, desktop_.get(), &frames);
      showAndPark(stage);
      stage.panel().setGeometry(200, 300, 600, 260);
      QTRY_COMPARE(stage.panel().geometry(), QRect(200, 300, 600, 260));
      stage.controller->setHeader(true, false);
      QTest::qWait(100);
      stage.clock.advance(1s);
      QCOMPARE(stage.panel().height(), 304);
      frame = QRect(200, 300, 600, 260);
    }
    const test::PanelStage again({}, desktop_.get(), &frames);
    showAndPark(again);
    QCOMPARE(again.panel().geometry(), frame);
  }

  void theKeyboardReachesTheHeader() {
    test::PanelStage stage({}, desktop_.get());
    showAndPark(stage);
    const QPoint inside = stage.panel().geometry().center();
    VirtualDisplay::click(inside.x(), inside.y());
    QTRY_VERIFY(stage.view->transcript().textView().hasFocus());
    VirtualDisplay::movePointer(3, 3);
    QTRY_VERIFY(!stage.view->chrome().hovering());
    stage.clock.advance(2s);
    QTRY_VERIFY(!stage.controller->headerShown());
    VirtualDisplay::run("xdotool", {"key", "Tab"});
    QTRY_VERIFY(stage.controller->headerShown());
    QTRY_VERIFY(stage.view->header().isAncestorOf(QApplication::focusWidget()));
    stage.clock.advance(10s);
    QVERIFY(stage.controller->headerShown());
    for (int i = 0; i < 8 && !stage.view->header().startStop().hasFocus(); ++i) {
      const QWidget* before = QApplication::focusWidget();
      VirtualDisplay::run("xdotool", {"key", "Tab"});
      QTRY_VERIFY(QApplication::focusWidget() != before);
    }
    VirtualDisplay::run("xdotool", {"key", "space"});
    QTRY_VERIFY(stage.asked.contains("toggle-captions"));
  }

  void alertsStandInFrontOfThePanel() {
    const test::PanelStage stage({}, desktop_.get());
    showAndPark(stage);
    QTimer::singleShot(300, qApp, [&stage] {
      QWidget* alert = QApplication::activeModalWidget();
      QVERIFY(alert);
      alert->move(stage.panel().pos());
      const bool isInFront =
          QTest::qWaitFor([alert] { return !isPanelAt(alert->geometry().center()); });
      alert->close();
      QVERIFY(isInFront);
    });
    WindowPresentation::showError(QStringLiteral("The disk is full."));
  }

  void thePanelIsTranslucent() {
    Other other;
    const test::PanelStage stage({}, desktop_.get());
    showAndPark(stage);
    const QPoint inside = stage.panel().geometry().center() + QPoint(0, 60);
    // The corner shows what is behind.
    const QPoint corner = stage.panel().geometry().topLeft() + QPoint(1, 1);
    QTRY_VERIFY(pixelAt(corner).lightness() > 200);
    const int overBright = pixelAt(inside).lightness();
    other.window.setStyleSheet("background: #000000");
    QTRY_COMPARE(pixelAt(corner), QColor(0, 0, 0));
    QTRY_VERIFY(pixelAt(inside).lightness() < overBright);
  }

 private:
  SystemClock clock_;
  std::unique_ptr<DesktopPlatform> desktop_;
};

int main(int argc, char** argv) {
  const test::VirtualDisplay display;
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  PanelDesktopTest suite;
  return QTest::qExec(&suite, argc, argv);
}
#include "panel_desktop_test.moc"
