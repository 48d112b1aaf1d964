// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/portal_shortcuts.h"

#include "support/private_bus.h"
#include "support/suite.h"

#include <memory>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QSignalSpy>
#include <utility>

using namespace velun;

/// A shortcut as the portal gets it.
struct Offered {
  QString id;
  QVariantMap options;
};
Q_DECLARE_METATYPE(Offered)

QDBusArgument& operator<<(QDBusArgument& argument, const Offered& offered) {
  argument.beginStructure();
  argument << offered.id << offered.options;
  argument.endStructure();
  return argument;
}
const QDBusArgument& operator>>(const QDBusArgument& argument, Offered& offered) {
  argument.beginStructure();
  argument >> offered.id >> offered.options;
  argument.endStructure();
  return argument;
}

namespace {

constexpr auto kPath = "/org/freedesktop/portal/desktop";
constexpr auto kInterface = "org.freedesktop.portal.GlobalShortcuts";

/// A session of the portal, which notes that it was closed.
class FakeSession final : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Session")

 public:
  FakeSession(const QString& path, QStringList& closed, QObject* parent)
      : QObject(parent), path_(path), closed_(closed) {}

 public Q_SLOTS:
  void Close() { closed_ << path_; }

 private:
  QString path_;
  QStringList& closed_;
};

/// A double of the global-shortcuts portal, which agrees to everything unless told otherwise.
class FakePortal final : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.GlobalShortcuts")
  Q_PROPERTY(uint version READ version)

 public:
  explicit FakePortal(const QDBusConnection& bus) : bus_(bus) {
    qDBusRegisterMetaType<Offered>();
    qDBusRegisterMetaType<QList<Offered>>();
    if (!bus_.registerObject(
            kPath, this, QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllProperties) ||
        !bus_.registerService("org.freedesktop.portal.Desktop")) {
      throw std::runtime_error("there is a portal already");
    }
  }

  uint version() const { return 1; }

  void press(const QString& session, const QString& id) {
    auto signal = QDBusMessage::createSignal(kPath, kInterface, "Activated");
    signal << QVariant::fromValue(QDBusObjectPath(session)) << id << qulonglong(1) << QVariantMap();
    bus_.send(signal);
  }

  QStringList sessions;
  QList<QList<Offered>> bound;
  /// The responses to requests: 0 agrees, 1 is the user's refusal.
  uint createResponse = 0;
  uint bindResponse = 0;
  /// Requests that are answered only by `answer`.
  bool isSlow = false;
  QStringList closed;

  void answer() {
    for (const QDBusMessage& signal : std::exchange(waiting_, {})) bus_.send(signal);
  }

 public Q_SLOTS:
  QDBusObjectPath CreateSession(const QVariantMap& options, const QDBusMessage& message) {
    const QString session = "/session/" + options["session_handle_token"].toString();
    sessions << session;
    bus_.registerObject(session, new FakeSession(session, closed, this),
                        QDBusConnection::ExportAllSlots);
    return respond(options, createResponse, {{"session_handle", session}}, message);
  }
  QDBusObjectPath BindShortcuts(const QDBusObjectPath& session, const QList<Offered>& offered,
                                const QString&, const QVariantMap& options,
                                const QDBusMessage& message) {
    if (session.path() == sessions.last()) bound << offered;
    return respond(options, bindResponse, {}, message);
  }

 private:
  QDBusObjectPath respond(const QVariantMap& options, uint response, const QVariantMap& results,
                          const QDBusMessage& message) {
    const QString path = QString("%1/request/%2/%3")
                             .arg(kPath, message.service().mid(1).replace('.', '_'),
                                  options["handle_token"].toString());
    auto signal = QDBusMessage::createSignal(path, "org.freedesktop.portal.Request", "Response");
    signal << response << results;
    isSlow ? waiting_.append(signal) : void(bus_.send(signal));
    return QDBusObjectPath(path);
  }

  QDBusConnection bus_;
  QList<QDBusMessage> waiting_;
};

}  // namespace

class PortalShortcutsTest final : public test::Suite {
  Q_OBJECT

 private:
  static std::vector<GlobalShortcut> oneShortcut(const char* keys) {
    return {{"toggle-panel", "Show or Hide", QKeySequence(keys)}};
  }

  std::unique_ptr<test::PrivateBus> bus_;

 private Q_SLOTS:
  void init() {
    Suite::init();
    bus_ = std::make_unique<test::PrivateBus>();
  }

  void withoutAPortalThereAreNoKeys() {
    PortalShortcuts shortcuts(bus_->connect());
    shortcuts.setShortcuts(oneShortcut("Ctrl+Alt+V"));
    QCOMPARE(shortcuts.way(), GlobalShortcuts::Way::none);
  }

  void theChosenKeysAreBoundAndTrigger() {
    FakePortal portal(bus_->connect());
    PortalShortcuts shortcuts(bus_->connect());
    shortcuts.setShortcuts(oneShortcut("Ctrl+Alt+V"));
    QTRY_COMPARE(shortcuts.way(), GlobalShortcuts::Way::desktop);
    QTRY_COMPARE(portal.bound.size(), 1);
    QCOMPARE(portal.bound[0].size(), 1);
    QCOMPARE(portal.bound[0][0].id, QString("toggle-panel"));
    QCOMPARE(portal.bound[0][0].options["description"].toString(), QString("Show or Hide"));
    QCOMPARE(portal.bound[0][0].options["preferred_trigger"].toString(), QString("CTRL+ALT+v"));
    QSignalSpy triggered(&shortcuts, &GlobalShortcuts::triggered);
    portal.press("/session/another", "toggle-panel");
    portal.press(portal.sessions.last(), "toggle-panel");
    QTRY_COMPARE(triggered.count(), 1);
    QCOMPARE(triggered[0][0].toString(), QString("toggle-panel"));
  }

  void changedKeysGetASessionOfTheirOwn() {
    FakePortal portal(bus_->connect());
    PortalShortcuts shortcuts(bus_->connect());
    shortcuts.setShortcuts(oneShortcut("Ctrl+Alt+V"));
    QTRY_COMPARE(portal.bound.size(), 1);
    shortcuts.setShortcuts(oneShortcut("Meta+F9"));
    QTRY_COMPARE(portal.bound.size(), 2);
    QVERIFY(portal.sessions.first() != portal.sessions.last());
    QCOMPARE(portal.bound[1][0].options["preferred_trigger"].toString(), QString("LOGO+F9"));
  }

  void aRefusalIsTold_data() {
    QTest::addColumn<bool>("isOfSession");
    QTest::newRow("of the session") << true;
    QTest::newRow("of the keys, by the user") << false;
  }
  void aRefusalIsTold() {
    QFETCH(bool, isOfSession);
    FakePortal portal(bus_->connect());
    (isOfSession ? portal.createResponse : portal.bindResponse) = 1;
    PortalShortcuts shortcuts(bus_->connect());
    shortcuts.setShortcuts(oneShortcut("Ctrl+Alt+V"));
    QSignalSpy changes(&shortcuts, &GlobalShortcuts::changed);
    QTRY_VERIFY(shortcuts.isRefused());
    QCOMPARE(changes.count(), 2);  // of the way, and this
    portal.createResponse = 0;
    portal.bindResponse = 0;
    shortcuts.setShortcuts(oneShortcut("Meta+F9"));
    QVERIFY(!shortcuts.isRefused());
    QTRY_COMPARE(portal.bound.size(), isOfSession ? 1 : 2);
    QVERIFY(!shortcuts.isRefused());
  }

  void aSessionThatIsGrantedTooLateIsClosed() {
    FakePortal portal(bus_->connect());
    portal.isSlow = true;
    PortalShortcuts shortcuts(bus_->connect());
    shortcuts.setShortcuts(oneShortcut("Ctrl+Alt+V"));
    QTRY_COMPARE(portal.sessions.size(), 1);
    shortcuts.setShortcuts(oneShortcut("Meta+F9"));
    QTRY_COMPARE(portal.sessions.size(), 2);
    portal.isSlow = false;
    portal.answer();
    QTRY_COMPARE(portal.bound.size(), 1);
    QTRY_COMPARE(portal.closed, QStringList(portal.sessions.first()));
  }

  void withoutChosenKeysTheDesktopAsksNothing() {
    FakePortal portal(bus_->connect());
    PortalShortcuts shortcuts(bus_->connect());
    shortcuts.setShortcuts({});
    QTRY_COMPARE(shortcuts.way(), GlobalShortcuts::Way::desktop);
    QVERIFY(portal.sessions.isEmpty());
  }

  void keysWithoutANotationHaveNoTrigger() {
    QCOMPARE(PortalShortcuts::triggerOf(QKeySequence("Ctrl++")), QString("CTRL+plus"));
    QCOMPARE(PortalShortcuts::triggerOf(QKeySequence(Qt::Key_MediaPlay)), QString());
    QCOMPARE(PortalShortcuts::triggerOf({}), QString());
  }
};

QTEST_GUILESS_MAIN(PortalShortcutsTest)
#include "portal_shortcuts_test.moc"
