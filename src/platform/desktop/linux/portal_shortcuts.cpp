// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/portal_shortcuts.h"

#include <algorithm>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <utility>

namespace velun {

/// A shortcut as the portal takes it: a(sa{sv}).
struct PortalShortcut {
  QString id;
  QVariantMap options;
};

namespace {

constexpr auto kService = "org.freedesktop.portal.Desktop";
constexpr auto kPath = "/org/freedesktop/portal/desktop";
constexpr auto kInterface = "org.freedesktop.portal.GlobalShortcuts";
constexpr auto kRequest = "org.freedesktop.portal.Request";

/// The part of an object path that names this connection.
QString senderOf(const QDBusConnection& bus) {
  return bus.baseService().mid(1).replace(u'.', u'_');
}

QString keyName(int key) {
  if (key >= Qt::Key_A && key <= Qt::Key_Z) return QString(QChar(key - Qt::Key_A + 'a'));
  if (key >= Qt::Key_0 && key <= Qt::Key_9) return QString(QChar(key));
  if (key >= Qt::Key_F1 && key <= Qt::Key_F35) {
    return QStringLiteral("F%1").arg(key - Qt::Key_F1 + 1);
  }
  switch (key) {
    case Qt::Key_Plus:
      return QStringLiteral("plus");
    case Qt::Key_Minus:
      return QStringLiteral("minus");
    case Qt::Key_Space:
      return QStringLiteral("space");
    default:
      return {};
  }
}

}  // namespace

QDBusArgument& operator<<(QDBusArgument& argument, const PortalShortcut& shortcut) {
  argument.beginStructure();
  argument << shortcut.id << shortcut.options;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, PortalShortcut& shortcut) {
  argument.beginStructure();
  argument >> shortcut.id >> shortcut.options;
  argument.endStructure();
  return argument;
}

PortalShortcuts::PortalShortcuts(const QDBusConnection& bus) : bus_(bus) {
  // Qt finds the slot below by the names of its types, and knows this one only after its first use.
  qRegisterMetaType<QDBusObjectPath>();
  qDBusRegisterMetaType<PortalShortcut>();
  qDBusRegisterMetaType<QList<PortalShortcut>>();
  bus_.connect(kService, kPath, kInterface, "Activated", this,
               SLOT(activated(QDBusObjectPath, QString, qulonglong, QVariantMap)));
  findPortal();
}

PortalShortcuts::~PortalShortcuts() {
  closeSession();
}

QString PortalShortcuts::triggerOf(const QKeySequence& keys) {
  if (keys.isEmpty()) return {};
  const QString key = keyName(keys[0].key());
  if (key.isEmpty()) return {};
  QStringList parts;
  const Qt::KeyboardModifiers modifiers = keys[0].keyboardModifiers();
  if (modifiers & Qt::ControlModifier) parts << QStringLiteral("CTRL");
  if (modifiers & Qt::AltModifier) parts << QStringLiteral("ALT");
  if (modifiers & Qt::ShiftModifier) parts << QStringLiteral("SHIFT");
  if (modifiers & Qt::MetaModifier) parts << QStringLiteral("LOGO");
  parts << key;
  return parts.join(u'+');
}

void PortalShortcuts::findPortal() {
  auto call =
      QDBusMessage::createMethodCall(kService, kPath, "org.freedesktop.DBus.Properties", "Get");
  call << QString(kInterface) << QStringLiteral("version");
  auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
    watcher->deleteLater();
    if (QDBusPendingReply<QDBusVariant>(*watcher).isError()) return;
    isThere_ = true;
    openSession();
    Q_EMIT changed();
  });
}

void PortalShortcuts::setShortcuts(const std::vector<GlobalShortcut>& shortcuts) {
  if (shortcuts == shortcuts_) return;
  shortcuts_ = shortcuts;
  if (isThere_) openSession();
}

/// A session's shortcuts can be bound only once.
void PortalShortcuts::openSession() {
  closeSession();
  ++number_;
  setRefused(false);
  const auto hasKeys = [](const GlobalShortcut& shortcut) {
    return !shortcut.keys.isEmpty();
  };
  if (std::ranges::none_of(shortcuts_, hasKeys)) return;
  const QString name = QStringLiteral("velun%1").arg(number_);
  const QVariantMap options{{"handle_token", "create" + name}, {"session_handle_token", name}};
  request("create" + name, "CreateSession", {options});
}

QString PortalShortcuts::requestPath(const QString& token) const {
  return QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2").arg(senderOf(bus_), token);
}

void PortalShortcuts::request(const QString& token, const QString& method,
                              const QVariantList& arguments) {
  bus_.connect(kService, requestPath(token), kRequest, "Response", this,
               SLOT(responded(uint, QVariantMap, QDBusMessage)));
  auto call = QDBusMessage::createMethodCall(kService, kPath, kInterface, method);
  call.setArguments(arguments);
  auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, number = number_] {
    watcher->deleteLater();
    if (watcher->isError() && number == number_) setRefused(true);
  });
}

void PortalShortcuts::responded(uint response, const QVariantMap& results,
                                const QDBusMessage& message) {
  bus_.disconnect(kService, message.path(), kRequest, "Response", this,
                  SLOT(responded(uint, QVariantMap, QDBusMessage)));
  const QString token = message.path().section(u'/', -1);
  const QString session = results.value("session_handle").toString();
  if (!token.endsWith(QStringLiteral("velun%1").arg(number_))) {
    // The shortcuts have changed since the request.
    if (!session.isEmpty()) close(session);
  } else if (response != 0) {
    setRefused(true);
  } else if (token.startsWith(QLatin1String("create"))) {
    session_ = session;
    bind();
  }
}

void PortalShortcuts::setRefused(bool isRefused) {
  if (std::exchange(isRefused_, isRefused) != isRefused) Q_EMIT changed();
}

void PortalShortcuts::bind() {
  QList<PortalShortcut> wanted;
  for (const GlobalShortcut& shortcut : shortcuts_) {
    if (shortcut.keys.isEmpty()) continue;
    QVariantMap options{{"description", shortcut.description}};
    const QString trigger = triggerOf(shortcut.keys);
    if (!trigger.isEmpty()) options.insert("preferred_trigger", trigger);
    wanted.append({shortcut.id, options});
  }
  const QString token = QStringLiteral("bindvelun%1").arg(number_);
  request(token, "BindShortcuts",
          {QVariant::fromValue(QDBusObjectPath(session_)), QVariant::fromValue(wanted), QString(),
           QVariantMap{{"handle_token", token}}});
}

void PortalShortcuts::closeSession() {
  if (!session_.isEmpty()) close(std::exchange(session_, {}));
}

void PortalShortcuts::close(const QString& session) {
  bus_.asyncCall(
      QDBusMessage::createMethodCall(kService, session, "org.freedesktop.portal.Session", "Close"));
}

void PortalShortcuts::activated(const QDBusObjectPath& session, const QString& id, qulonglong,
                                const QVariantMap&) {
  if (session.path() == session_) Q_EMIT triggered(id);
}

}  // namespace velun
