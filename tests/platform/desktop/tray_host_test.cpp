// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/linux_tray_host.h"
#include "support/manual_clock.h"
#include "support/private_bus.h"
#include "support/suite.h"

#include <QSignalSpy>

using namespace velun;
using namespace std::chrono_literals;

namespace {

/// A double of the StatusNotifier watcher with the property that the search reads.
class Watcher final : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
  Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost)

 public:
  explicit Watcher(const QDBusConnection& bus) : bus_(bus) {
    bus_.registerObject("/StatusNotifierWatcher", this,
                        QDBusConnection::ExportAllProperties | QDBusConnection::ExportAllSignals);
  }

  void appear() { bus_.registerService("org.kde.StatusNotifierWatcher"); }
  void getHost() {
    hasHost_ = true;
    Q_EMIT StatusNotifierHostRegistered();
  }
  bool hasHost() const { return hasHost_; }

 Q_SIGNALS:
  void StatusNotifierHostRegistered();

 private:
  QDBusConnection bus_;
  bool hasHost_ = false;
};

struct Fixture {
  test::PrivateBus bus;
  test::ManualClock clock;
  Watcher watcher{bus.connect()};
  LinuxTrayHost host{clock, bus.connect()};
  QSignalSpy found{&host, &TrayHost::found};
  QSignalSpy missing{&host, &TrayHost::missing};
};

}  // namespace

class TrayHostTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void existingHostIsFoundAtOnce() {
    Fixture fixture;
    fixture.watcher.getHost();
    fixture.watcher.appear();
    fixture.host.search();
    QTRY_COMPARE(fixture.found.count(), 1);
    QVERIFY(fixture.host.protocol() == TrayHost::Protocol::statusNotifier);
    fixture.clock.advance(1min);
    QCOMPARE(fixture.missing.count(), 0);
    QCOMPARE(fixture.clock.scheduledCount(), std::size_t(0));
  }

  void missingIsEmittedOnceAfterTwoSeconds() {
    Fixture fixture;
    fixture.host.search();
    fixture.clock.advance(1999ms);
    QCOMPARE(fixture.missing.count(), 0);
    fixture.clock.advance(1ms);
    QCOMPARE(fixture.missing.count(), 1);
    fixture.clock.advance(1min);
    QCOMPARE(fixture.missing.count(), 1);
    QVERIFY(!fixture.host.protocol());
  }

  void watcherWithoutAHostIsNotEnough() {
    Fixture fixture;
    fixture.watcher.appear();
    fixture.host.search();
    fixture.clock.advance(2s);
    QCOMPARE(fixture.missing.count(), 1);
    fixture.watcher.getHost();
    QTRY_COMPARE(fixture.found.count(), 1);
  }

  void laterHostIsFound() {
    Fixture fixture;
    fixture.host.search();
    fixture.clock.advance(5s);
    fixture.watcher.getHost();
    fixture.watcher.appear();
    QTRY_COMPARE(fixture.found.count(), 1);
    QVERIFY(fixture.host.protocol() == TrayHost::Protocol::statusNotifier);
  }

  void desktopTellsWhetherSymbolicIconsAreColoured_data() {
    QTest::addColumn<QByteArray>("desktop");
    QTest::addColumn<bool>("colours");
    QTest::newRow("GNOME") << QByteArray("GNOME") << true;
    QTest::newRow("a variant of GNOME") << QByteArray("ubuntu:GNOME") << true;
    QTest::newRow("Plasma") << QByteArray("KDE") << true;
    QTest::newRow("LXQt") << QByteArray("LXQt") << false;
    QTest::newRow("sway") << QByteArray("sway") << false;
    QTest::newRow("unknown") << QByteArray() << false;
  }
  void desktopTellsWhetherSymbolicIconsAreColoured() {
    QFETCH(QByteArray, desktop);
    QFETCH(bool, colours);
    qputenv("XDG_CURRENT_DESKTOP", desktop);
    Fixture fixture;
    fixture.watcher.getHost();
    fixture.watcher.appear();
    fixture.host.search();
    QVERIFY(!fixture.host.coloursSymbolicIcons());
    QTRY_COMPARE(fixture.found.count(), 1);
    QCOMPARE(fixture.host.coloursSymbolicIcons(), colours);
    qunsetenv("XDG_CURRENT_DESKTOP");
  }

  void hostIsMissingWithoutABus() {
    test::ManualClock clock;
    LinuxTrayHost host(clock, QDBusConnection("no such connection"));
    const QSignalSpy missing(&host, &TrayHost::missing);
    host.search();
    clock.advance(2s);
    QCOMPARE(missing.count(), 1);
    QVERIFY(!host.foreground());
  }
};

QTEST_MAIN(TrayHostTest)
#include "tray_host_test.moc"
