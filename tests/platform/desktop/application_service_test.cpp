// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/dbus_application_service.h"
#include "support/private_bus.h"
#include "support/settle.h"
#include "support/suite.h"

#include <QDBusConnectionInterface>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QSignalSpy>
#include <thread>

using namespace velun;

namespace {

constexpr auto kName = "app.example.Program";
constexpr auto kPath = "/app/example/Program";
constexpr auto kApplication = "org.freedesktop.Application";
constexpr auto kProperties = "org.freedesktop.DBus.Properties";

ApplicationAction plain(const QString& name) {
  ApplicationAction action;
  action.name = name;
  return action;
}

std::vector<ApplicationAction> someActions(bool isRunning) {
  ApplicationAction toggle = plain("toggle");
  toggle.state = isRunning;
  ApplicationAction input = plain("input");
  input.parameterType = "s";
  input.state = QStringLiteral("computer");
  ApplicationAction asleep = plain("asleep");
  asleep.isEnabled = false;
  return {toggle, input, asleep};
}

/// Keeps every signal that it is connected to.
class Listener final : public QObject {
  Q_OBJECT

 public:
  std::vector<QDBusMessage> changes;

 public Q_SLOTS:
  void changed(const QDBusMessage& change) { changes.push_back(change); }
};

/// Calls from another program's side while this thread replies.
QDBusMessage call(const QDBusConnection& bus, const char* interface, const char* method,
                  const QVariantList& arguments) {
  auto message = QDBusMessage::createMethodCall(kName, kPath, interface, method);
  message.setArguments(arguments);
  QDBusPendingCall pending = bus.asyncCall(message);
  QDBusPendingCallWatcher watcher(pending);
  QSignalSpy finished(&watcher, &QDBusPendingCallWatcher::finished);
  if (!watcher.isFinished()) finished.wait();
  return pending.reply();
}

QVariantMap dbusProperty(const QDBusConnection& bus, const char* name) {
  const QDBusMessage reply = call(bus, kProperties, "Get", {"app.velun.Velun", name});
  return qdbus_cast<QVariantMap>(reply.arguments().value(0).value<QDBusVariant>().variant());
}

}  // namespace

class ApplicationServiceTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    Suite::init();
    bus = std::make_unique<test::PrivateBus>();
    service = std::make_unique<DBusApplicationService>(kName, bus->connect());
    using Service = ApplicationService;
    connect(service.get(), &Service::activated, this, [this] { received.append("activate"); });
    connect(service.get(), &Service::openRequested, this, [this](const QList<QUrl>& files) {
      for (const QUrl& file : files) received.append("open " + file.toString());
    });
    connect(service.get(), &Service::actionRequested, this,
            [this](const QString& name, const QVariant& parameter) {
              received.append((name + " " + parameter.toString()).trimmed());
            });
    received.clear();
  }
  void cleanup() {
    service.reset();
    bus.reset();
  }

  void firstInstanceIsGranted() {
    QCOMPARE(service->claim(), ApplicationService::Claim::granted);
    QVERIFY(bus->connect().interface()->isServiceRegistered(kName));
  }

  void secondLaunchActivatesTheFirst() {
    QCOMPARE(service->claim(), ApplicationService::Claim::granted);
    auto claim = ApplicationService::Claim::granted;
    const QDBusConnection other = bus->connect();
    std::thread second([&] {
      DBusApplicationService again(kName, other);
      claim = again.claim();
    });
    QTRY_COMPARE(received, QStringList("activate"));
    second.join();
    QCOMPARE(claim, ApplicationService::Claim::forwarded);
  }

  void theTokenOfALaunchIsKeptForTheNextWindow() {
    QCOMPARE(service->claim(), ApplicationService::Claim::granted);
    const auto tokenAfter = [this](const QVariantMap& data) {
      qunsetenv("XDG_ACTIVATION_TOKEN");
      call(bus->connect(), kApplication, "Activate", {data});
      return qgetenv("XDG_ACTIVATION_TOKEN");
    };
    QCOMPARE(tokenAfter({{"activation-token", "one"}, {"desktop-startup-id", "old"}}), "one");
    QCOMPARE(tokenAfter({{"desktop-startup-id", "two"}}), "two");
    QCOMPARE(tokenAfter({}), QByteArray());
    qunsetenv("XDG_ACTIVATION_TOKEN");
  }

  void unresponsiveInstanceIsReported() {
    QCOMPARE(service->claim(), ApplicationService::Claim::granted);
    // Asked from the thread that would have to answer.
    DBusApplicationService again(kName, bus->connect());
    QCOMPARE(again.claim(), ApplicationService::Claim::unanswered);
  }

  void grantedWithoutABus() {
    DBusApplicationService alone(kName, QDBusConnection("no such connection"));
    QCOMPARE(alone.claim(), ApplicationService::Claim::granted);
    alone.setActions(someActions(false));
  }

  void requestsToOpenFiles() {
    service->claim();
    call(bus->connect(), kApplication, "Open",
         {QStringList{"file:///a%20b.json", "file:///c.md"}, QVariantMap()});
    QCOMPARE(received, QStringList({"open file:///a b.json", "open file:///c.md"}));
  }

  void actionsAreRequestedAfterTheReply() {
    service->claim();
    service->setActions(someActions(false));
    const QDBusConnection caller = bus->connect();
    call(caller, kApplication, "ActivateAction", {"toggle", QVariantList(), QVariantMap()});
    call(caller, kApplication, "ActivateAction",
         {"input", QVariantList{"microphone"}, QVariantMap()});
    QTRY_COMPARE(received, QStringList({"toggle", "input microphone"}));
  }

  void rejectsInvalidRequests_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QVariantList>("parameters");
    QTest::newRow("unknown") << "nothing" << QVariantList();
    QTest::newRow("parameter too many") << "toggle" << QVariantList{"x"};
    QTest::newRow("parameter missing") << "input" << QVariantList();
    QTest::newRow("parameter of another type") << "input" << QVariantList{7};
  }
  void rejectsInvalidRequests() {
    QFETCH(QString, name);
    QFETCH(QVariantList, parameters);
    service->claim();
    service->setActions(someActions(false));
    const QDBusMessage reply =
        call(bus->connect(), kApplication, "ActivateAction", {name, parameters, QVariantMap()});
    QCOMPARE(reply.errorName(), QString("org.freedesktop.DBus.Error.InvalidArgs"));
    test::settle();
    QVERIFY(received.isEmpty());
  }

  void ignoresDisabledActions() {
    service->claim();
    service->setActions(someActions(false));
    const QDBusMessage reply = call(bus->connect(), kApplication, "ActivateAction",
                                    {"asleep", QVariantList(), QVariantMap()});
    QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
    test::settle();
    QVERIFY(received.isEmpty());
  }

  void actionsAndTheirStateCanBeRead() {
    service->claim();
    service->setActions(someActions(true));
    const QDBusConnection caller = bus->connect();
    QCOMPARE(dbusProperty(caller, "Actions"),
             QVariantMap({{"toggle", true}, {"input", true}, {"asleep", false}}));
    QCOMPARE(dbusProperty(caller, "State"), QVariantMap({{"toggle", true}, {"input", "computer"}}));
  }

  void announcesOnlyChanges() {
    service->claim();
    service->setActions(someActions(false));
    QDBusConnection listening = bus->connect();
    Listener listener;
    listening.connect(kName, kPath, kProperties, "PropertiesChanged", &listener,
                      SLOT(changed(QDBusMessage)));
    dbusProperty(listening, "State");  // by now the bus knows who listens

    service->setActions(someActions(false));
    service->setActions(someActions(true));
    std::vector<ApplicationAction> awake = someActions(true);
    awake.back().isEnabled = true;
    service->setActions(awake);
    QTRY_COMPARE(listener.changes.size(), std::size_t(2));
    const auto changed = [&](std::size_t index) {
      return qdbus_cast<QVariantMap>(listener.changes[index].arguments().value(1));
    };
    QCOMPARE(changed(0).keys(), QStringList("State"));
    QCOMPARE(qdbus_cast<QVariantMap>(changed(0)["State"]).value("toggle"), true);
    QCOMPARE(changed(1).keys(), QStringList("Actions"));
    QCOMPARE(qdbus_cast<QVariantMap>(changed(1)["Actions"]).value("asleep"), true);
  }

 private:
  std::unique_ptr<test::PrivateBus> bus;
  std::unique_ptr<DBusApplicationService> service;
  QStringList received;
};

QTEST_GUILESS_MAIN(ApplicationServiceTest)
#include "application_service_test.moc"
