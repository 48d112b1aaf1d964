// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/portal_shortcuts.h"

#include "support/private_bus.h"
#include "support/suite.h"

#include <memory>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QSignalSpy>

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

/// A double of the global-shortcuts portal, which agrees to everything.
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

 public Q_SLOTS:
  QDBusObjectPath CreateSession(const QVariantMap& options, const QDBusMessage& message) {
    const QString session = "/session/" + options["session_handle_token"].toString();
    sessions << session;
    return respond(options, {{"session_handle", session}}, message);
  }
  QDBusObjectPath BindShortcuts(const QDBusObjectPath& session, const QList<Offered>& offered,
                                const QString&, const QVariantMap& options,
                                const QDBusMessage& message) {
    if (session.path() == sessions.last()) bound << offered;
    return respond(options, {}, message);
  }

 private:
  QDBusObjectPath respond(const QVariantMap& options, const QVariantMap& results,
                          const QDBusMessage& message) {
    const QString path = QString("%1/request/%2/%3")
                             .arg(kPath, message.service().mid(1).replace('.', '_'),
                                  options["handle_token"].toString());
    auto signal = QDBusMessage::createSignal(path, "org.freedesktop.portal.Request", "Response");
    signal << 0U << results;
    bus_.send(signal);
    return QDBusObjectPath(path);
  }

  QDBusConnection bus_;
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
