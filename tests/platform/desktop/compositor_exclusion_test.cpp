// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/compositor_exclusion.h"

#include "support/private_bus.h"
#include "support/suite.h"

#include <csignal>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QFile>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QSignalSpy>
#include <sys/resource.h>

using namespace velun;

namespace {

/// A double of KWin's scripting interface that records the scripts and replies for them.
class FakeScripting final : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.kde.kwin.Scripting")

 public:
  explicit FakeScripting(const QDBusConnection& bus) : bus_(bus) {}

  bool hasProperty = true;
  QStringList log;
  QString script;

  /// The arguments of the script: pid, title, excluded, service and path.
  QString values() const { return QRegularExpression("= \\[(.*)\\];").match(script).captured(1); }

 public Q_SLOTS:
  int loadScript(const QString& path, const QString& name) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return -1;
    script = QString::fromUtf8(file.readAll());
    log << "load " + name;
    return 0;
  }
  void start() {
    log << "start";
    const QStringList parts = values().split(u',');
    const QString service = QString(parts.value(3)).remove(u'"');
    const QString path = QString(parts.value(4)).remove(u'"');
    QDBusMessage answer =
        QDBusMessage::createMethodCall(service, path, "app.velun.Velun.CaptureExclusion", "answer");
    answer.setArguments({hasProperty});
    bus_.send(answer);
  }
  bool unloadScript(const QString& name) {
    log << "unload " + name;
    return true;
  }

 private:
  QDBusConnection bus_;
};

}  // namespace

class CompositorExclusionTest final : public test::Suite {
  Q_OBJECT

 private:
  QString name() const {
    return QStringLiteral("app.velun.Velun.%1").arg(QCoreApplication::applicationPid());
  }

  /// Delivers everything that was sent from `sender` to the objects of `receiver`: the bus keeps
  /// the order, so a reply from it comes after all earlier messages.
  static void deliver(const QDBusConnection& sender, const QDBusConnection& receiver) {
    for (const QDBusConnection& bus : {sender, receiver}) {
      QVERIFY(bus.interface()->isServiceRegistered("org.freedesktop.DBus"));
    }
    QCoreApplication::processEvents();
  }

 private Q_SLOTS:
  void initTestCase() { bus_ = std::make_unique<test::PrivateBus>(); }

  void isNotPossibleWithoutKWin() {
    QDBusConnection own = bus_->connect();
    const CompositorExclusion exclusion(own);
    deliver(own, own);
    QVERIFY(!exclusion.isPossible());
  }

  void excludesThePanelOnceKWinReportsSupport() {
    QDBusConnection own = bus_->connect();
    QDBusConnection kwin = bus_->connect();
    FakeScripting scripting(kwin);
    QVERIFY(kwin.registerObject("/Scripting", &scripting, QDBusConnection::ExportAllSlots));
    QVERIFY(kwin.registerService("org.kde.KWin"));
    {
      CompositorExclusion exclusion(own);
      const QSignalSpy spy(&exclusion, &CompositorExclusion::isPossibleChanged);
      exclusion.setExcluded("Velun \"Captions\"", true);
      QTRY_VERIFY(exclusion.isPossible());
      QCOMPARE(spy.count(), 1);
      QCOMPARE(scripting.log, (QStringList{"load " + name(), "start"}));
      exclusion.setExcluded("Velun \"Captions\"", true);
      QTRY_COMPARE(scripting.log.size(), 5);
      QCOMPARE(scripting.log[2], "unload " + name());
      QVERIFY2(scripting.values().startsWith(QStringLiteral("%1,\"Velun \\\"Captions\\\"\",true,")
                                                 .arg(QCoreApplication::applicationPid())),
               qPrintable(scripting.values()));
      QVERIFY(scripting.script.contains("excludeFromCapture"));
      exclusion.setExcluded("Velun \"Captions\"", true);
      deliver(own, kwin);
      QCOMPARE(scripting.log.size(), 5);
    }
    QTRY_COMPARE(scripting.log.back(), "unload " + name());
    kwin.unregisterService("org.kde.KWin");
  }

  void isNotPossibleWhenTheScriptCannotBeWritten() {
    QDBusConnection kwin = bus_->connect();
    FakeScripting scripting(kwin);
    QVERIFY(kwin.registerObject("/Scripting", &scripting, QDBusConnection::ExportAllSlots));
    QVERIFY(kwin.registerService("org.kde.KWin"));
    CompositorExclusion exclusion(bus_->connect());
    QTRY_VERIFY(exclusion.isPossible());
    const auto release = qScopeGuard([&kwin] { kwin.unregisterService("org.kde.KWin"); });
    rlimit usual{};
    QCOMPARE(getrlimit(RLIMIT_FSIZE, &usual), 0);
    const rlimit none{0, usual.rlim_max};
    const auto ignored = std::signal(SIGXFSZ, SIG_IGN);
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &none), 0);
    exclusion.setExcluded("Velun Captions", true);
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &usual), 0);
    std::signal(SIGXFSZ, ignored);
    QVERIFY(!exclusion.isPossible());
    QTRY_COMPARE(scripting.log, (QStringList{"load " + name(), "start", "unload " + name()}));
  }

  void followsKWinThatStartsLaterAndRestarts() {
    CompositorExclusion exclusion(bus_->connect());
    const QSignalSpy spy(&exclusion, &CompositorExclusion::isPossibleChanged);
    QDBusConnection kwin = bus_->connect();
    FakeScripting scripting(kwin);
    QVERIFY(kwin.registerObject("/Scripting", &scripting, QDBusConnection::ExportAllSlots));
    QVERIFY(kwin.registerService("org.kde.KWin"));
    QTRY_VERIFY(exclusion.isPossible());
    exclusion.setExcluded("Velun Captions", true);
    QTRY_COMPARE(scripting.log.size(), 5);
    kwin.unregisterService("org.kde.KWin");
    QTRY_VERIFY(!exclusion.isPossible());
    scripting.log.clear();
    QVERIFY(kwin.registerService("org.kde.KWin"));
    QTRY_VERIFY(exclusion.isPossible());
    QCOMPARE(scripting.log, (QStringList{"load " + name(), "start"}));
    QVERIFY(scripting.values().contains("\"Velun Captions\",true"));
    QCOMPARE(spy.count(), 3);
    kwin.unregisterService("org.kde.KWin");
  }

  void isNotPossibleWhenKWinRefusesTheScript() {
    QDBusConnection kwin = bus_->connect();
    auto scripting = std::make_unique<FakeScripting>(kwin);
    QVERIFY(kwin.registerObject("/Scripting", scripting.get(), QDBusConnection::ExportAllSlots));
    QVERIFY(kwin.registerService("org.kde.KWin"));
    const auto release = qScopeGuard([&kwin] { kwin.unregisterService("org.kde.KWin"); });
    CompositorExclusion exclusion(bus_->connect());
    QTRY_VERIFY(exclusion.isPossible());
    scripting.reset();
    exclusion.setExcluded("Velun Captions", true);
    QTRY_VERIFY(!exclusion.isPossible());
  }

  void isNotPossibleWithAnOlderKWin() {
    QDBusConnection own = bus_->connect();
    QDBusConnection kwin = bus_->connect();
    FakeScripting scripting(kwin);
    scripting.hasProperty = false;
    QVERIFY(kwin.registerObject("/Scripting", &scripting, QDBusConnection::ExportAllSlots));
    QVERIFY(kwin.registerService("org.kde.KWin"));
    CompositorExclusion exclusion(own);
    QTRY_COMPARE(scripting.log.size(), 2);
    deliver(kwin, own);
    QVERIFY(!exclusion.isPossible());
    exclusion.setExcluded("Velun Captions", true);
    deliver(own, kwin);
    QCOMPARE(scripting.log.size(), 2);
  }

 private:
  std::unique_ptr<test::PrivateBus> bus_;
};

QTEST_GUILESS_MAIN(CompositorExclusionTest)
#include "compositor_exclusion_test.moc"
