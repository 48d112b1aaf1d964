// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/pending_indicator.h"

#include "support/suite.h"
#include "ui/caption/spinner_clock.h"

#include <QAbstractEventDispatcher>
#include <QProxyStyle>
#include <QSignalSpy>

using namespace velun;

namespace {

qsizetype timersOf(QObject& object) {
  return QAbstractEventDispatcher::instance()->registeredTimers(&object).size();
}

/// A window with a hidden spinner.
struct Window {
  Window() {
    spinner->hide();
    widget.show();
  }

  QWidget widget;
  std::unique_ptr<PendingIndicator> spinner = std::make_unique<PendingIndicator>(&widget);
};

/// The desktop's wish for reduced motion, as styles report it.
class MotionStyle final : public QProxyStyle {
 public:
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* result) const override {
    if (hint == SH_Widget_Animation_Duration) return isReduced ? 0 : 200;
    return QProxyStyle::styleHint(hint, option, widget, result);
  }

  bool isReduced = false;
};

}  // namespace

class PendingIndicatorTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void oneTimerRotatesTheSpinnersOfAllWindows() {
    Window one;
    Window other;
    PendingIndicator third(&other.widget);
    for (auto* spinner : {one.spinner.get(), other.spinner.get(), &third}) spinner->show();
    QCOMPARE(timersOf(*one.spinner) + timersOf(*other.spinner) + timersOf(third), 0);
    QCOMPARE(timersOf(*SpinnerClock::shared()), 1);
  }

  void spinnersRotateInPhase() {
    Window one;
    Window other;
    for (Window* window : {&one, &other}) {
      window->spinner->resize(16, 16);
      window->spinner->show();
    }
    const std::shared_ptr<SpinnerClock> clock = SpinnerClock::shared();
    QSignalSpy steps(clock.get(), &SpinnerClock::stepped);
    const QImage before = one.spinner->grab().toImage();
    const double start = clock->phase();
    QTRY_VERIFY(clock->phase() != start);
    QVERIFY(!steps.isEmpty());
    QVERIFY(one.spinner->grab().toImage() != before);
    QCOMPARE(one.spinner->grab().toImage(), other.spinner->grab().toImage());
  }

  void timerRunsOnlyWhileASpinnerIsVisible() {
    const std::shared_ptr<SpinnerClock> clock = SpinnerClock::shared();
    Window one;
    Window other;
    QVERIFY(!clock->isRunning());
    one.spinner->show();
    other.spinner->show();
    QVERIFY(clock->isRunning());
    one.spinner->hide();
    QVERIFY(clock->isRunning());
    other.widget.hide();
    QVERIFY(!clock->isRunning());
    other.widget.show();
    QVERIFY(clock->isRunning());
    // Deleted while it is visible, as when its line has arrived.
    other.spinner.reset();
    QVERIFY(!clock->isRunning());
  }

  void clockEndsWithTheLastSpinner() {
    std::weak_ptr<SpinnerClock> clock;
    {
      Window window;
      window.spinner->show();
      clock = SpinnerClock::shared();
      QVERIFY(!clock.expired());
    }
    QVERIFY(clock.expired());
  }

  void withReducedMotionNothingRotates() {
    MotionStyle style;
    style.isReduced = true;
    const std::shared_ptr<SpinnerClock> clock = SpinnerClock::shared();
    Window window;
    window.spinner->setStyle(&style);
    window.spinner->show();
    QVERIFY(!clock->isRunning());
    style.isReduced = false;
    window.spinner->hide();
    window.spinner->show();
    QVERIFY(clock->isRunning());
    // The setting changes while the spinner rotates.
    style.isReduced = true;
    QTRY_VERIFY(!clock->isRunning());
  }
};

QTEST_MAIN(PendingIndicatorTest)
#include "pending_indicator_test.moc"
