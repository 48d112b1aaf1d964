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
  static constexpr int kMaxDragSteps = 500;

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
  /// Where the X server shows the window. A window manager that moves it tells the program at the
  /// end.
  static QRect frameOnScreen(const QWidget& window) {
    const QString shown = VirtualDisplay::run(
        "xdotool", {"getwindowgeometry", "--shell", QString::number(window.winId())});
    const auto value = [&shown](const char* name) {
      return shown.section(QString::fromLatin1(name) + '=', 1).section('\n', 0, 0).toInt();
    };
    return {value("\nX"), value("\nY"), value("WIDTH"), value("HEIGHT")};
  }
  /// Drags with the button down until the panel is shown at `to`. The pointer goes back and forth
  /// at first, because the window manager takes it some time after the press.
  static void drag(const test::PanelStage& stage, const QPoint& from, const QPoint& by,
                   const QRect& to) {
    const QRect frame = frameOnScreen(stage.panel());
    VirtualDisplay::movePointer(from.x(), from.y());
    VirtualDisplay::pressButton();
    for (int step = 1; frameOnScreen(stage.panel()) == frame && step < kMaxDragSteps; ++step) {
      const QPoint here = from + by * (1 + step % 3) / 5;
      VirtualDisplay::movePointer(here.x(), here.y());
    }
    VirtualDisplay::movePointer(from.x() + by.x(), from.y() + by.y());
    QTRY_COMPARE(frameOnScreen(stage.panel()), to);
    VirtualDisplay::releaseButton();
    QTRY_VERIFY(VirtualDisplay::isPointerFree());
    QTRY_COMPARE(stage.panel().geometry(), to);
  }
  /// The window that the window manager gives the keyboard to.
  static WId activeWindow() {
    return VirtualDisplay::run("xdotool", {"getactivewindow"}).trimmed().toULongLong();
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
    // The window manager handles requests in order: once the marker is shown, the window is raised.
    QWidget marker;
    marker.setStyleSheet("background: #ff0000");
    marker.setGeometry(10, 10, 60, 60);
    marker.show();
    QTRY_COMPARE(pixelAt(marker.geometry().center()), QColor(255, 0, 0));
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
    QTRY_VERIFY(property(stage.panel(), "_NET_WM_STATE").contains("_NET_WM_STATE_ABOVE"));
    QCOMPARE(activeWindow(), other.window.winId());
    settle();
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
      QVERIFY(QTest::qWaitFor([&] {
        watch();
        return stage.panel().height() == frame.height() + 44;
      }));
      QCOMPARE(stage.panel().geometry().bottom(), frame.bottom());
      VirtualDisplay::movePointer(3, 3);
      QTRY_VERIFY(!stage.view->chrome().hovering());
      stage.clock.advance(1500ms);
      QVERIFY(QTest::qWaitFor([&] {
        watch();
        return stage.panel().height() == frame.height();
      }));
      QCOMPARE(stage.panel().geometry(), frame);
    }
  }

  void theHeaderMovesThePanelAndTheTranscriptDoesNot() {
    test::PanelStage stage({}, desktop_.get());
    stage.final("A sentence to select.");
    showAndPark(stage);
    stage.controller->setHeader(true, false);
    const QRect frame = stage.panel().geometry();
    const QPoint handle(frame.center().x() - 20, frame.top() + 22);
    QTRY_VERIFY(isPanelAt(handle));
    const QRect moved = frame.translated(-80, -60);
    drag(stage, handle, QPoint(-80, -60), moved);
    const QPoint inText = moved.center() + QPoint(0, 40);
    const SelectableTranscriptTextView& text = stage.view->transcript().textView();
    VirtualDisplay::movePointer(inText.x(), inText.y());
    VirtualDisplay::pressButton();
    QTRY_VERIFY(text.isSelectingText());
    VirtualDisplay::movePointer(inText.x() + 50, inText.y() + 30);
    VirtualDisplay::releaseButton();
    QTRY_VERIFY(!text.isSelectingText());
    QTRY_VERIFY(VirtualDisplay::isPointerFree());
    QCOMPARE(stage.panel().geometry(), moved);
  }

  void thePanelIsResizedAtItsEdges() {
    test::PanelStage stage({}, desktop_.get());
    for (int i = 0; i < 80; ++i) stage.final(QStringLiteral("Line %1 of many.").arg(i));
    showAndPark(stage);
    const QRect frame = stage.panel().geometry();
    const QScrollBar* bar = stage.view->transcript().textView().verticalScrollBar();
    // The pointer shows the header, so the top edge moves first.
    VirtualDisplay::movePointer(frame.center().x(), frame.center().y());
    QTRY_COMPARE(stage.panel().height(), frame.height() + 44);
    const QRect shown = stage.panel().geometry();
    drag(stage, shown.bottomRight() - QPoint(2, 2), QPoint(60, 20), shown.adjusted(0, 0, 60, 20));
    QCOMPARE(bar->value(), bar->maximum());
    const QRect now = stage.panel().geometry();
    drag(stage, QPoint(now.center().x(), now.top() + 2), QPoint(0, -50),
         now.adjusted(0, -50, 0, 0));
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
      const QPoint here = start + QPoint(20 * (i + 1), 0);
      VirtualDisplay::movePointer(here.x(), here.y());
      QTRY_COMPARE(text.cursorForPosition(text.viewport()->mapFromGlobal(here)).position(),
                   text.textCursor().position());
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
      QTRY_COMPARE(stage.panel().height(), 304);
      QTRY_COMPARE(frameOnScreen(stage.panel()).height(), 304);
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
    const QPoint belowTheButton = stage.panel().geometry().center() + QPoint(0, 60);
    VirtualDisplay::click(belowTheButton.x(), belowTheButton.y());
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
