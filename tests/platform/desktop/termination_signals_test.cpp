// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/termination_signals.h"

#include "support/suite.h"

#include <csignal>
#include <QSignalSpy>

using namespace velun;

class TerminationSignalsTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void reportsEachSignalOnTheMainThread() {
    const TerminationSignals signals;
    QSignalSpy received(&signals, &TerminationSignals::received);
    std::raise(SIGTERM);
    std::raise(SIGINT);
    QCOMPARE(received.count(), 0);
    QTRY_COMPARE(received.count(), 2);
  }

  /// Without this a second signal would kill the program while it cleans up.
  void ignoresSignalsOnceTheProgramEnds() {
    { const TerminationSignals signals; }
    QCOMPARE(std::raise(SIGTERM), 0);
    QCOMPARE(std::raise(SIGINT), 0);
  }
};

QTEST_GUILESS_MAIN(TerminationSignalsTest)
#include "termination_signals_test.moc"
