// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/access_preferences.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <utility>

namespace velun {

namespace {

constexpr auto kService = "org.freedesktop.portal.Desktop";
constexpr auto kPath = "/org/freedesktop/portal/desktop";
constexpr auto kInterface = "org.freedesktop.portal.Settings";

const auto kShared = QStringLiteral("org.freedesktop.appearance");
const auto kGnome = QStringLiteral("org.gnome.desktop.interface");
const auto kGnomeAccess = QStringLiteral("org.gnome.desktop.a11y.interface");

}  // namespace

AccessPreferences::AccessPreferences(const QDBusConnection& bus) : bus_(bus) {
  if (!bus_.isConnected()) return;
  // The slot takes the whole message: QtDBus has not registered QDBusVariant this early.
  bus_.connect(kService, kPath, kInterface, "SettingChanged", this,
               SLOT(settingChanged(QDBusMessage)));
  // A portal that restarts may have other values.
  watcher_ = std::make_unique<QDBusServiceWatcher>(kService, bus_,
                                                   QDBusServiceWatcher::WatchForRegistration);
  connect(watcher_.get(), &QDBusServiceWatcher::serviceRegistered, this,
          &AccessPreferences::readAll);
  readAll();
}

AccessPreferences::~AccessPreferences() = default;

void AccessPreferences::readAll() {
  QDBusMessage call = QDBusMessage::createMethodCall(kService, kPath, kInterface, "ReadAll");
  call << QStringList{kShared, kGnome, kGnomeAccess};
  auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
    watcher->deleteLater();
    const QDBusMessage reply = watcher->reply();
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != "a{sa{sv}}") return;
    settings_ = qdbus_cast<QMap<QString, QVariantMap>>(reply.arguments().constFirst());
    update();
  });
}

void AccessPreferences::settingChanged(const QDBusMessage& signal) {
  if (signal.signature() != "ssv") return;
  const QString group = signal.arguments()[0].toString();
  if (group != kShared && group != kGnome && group != kGnomeAccess) return;
  const QString key = signal.arguments()[1].toString();
  settings_[group][key] = signal.arguments()[2].value<QDBusVariant>().variant();
  update();
}

void AccessPreferences::update() {
  const QVariantMap shared = settings_.value(kShared);
  const QVariantMap gnome = settings_.value(kGnome);
  // In the shared settings 1 means the preference; 0 and unknown values mean none.
  const bool contrast = shared.value("contrast").toUInt() == 1 ||
                        settings_.value(kGnomeAccess).value("high-contrast").toBool() ||
                        // "HighContrast" and "HighContrastInverse".
                        gnome.value("gtk-theme").toString().startsWith(u"HighContrast");
  const bool lessMotion = shared.value("reduced-motion").toUInt() == 1 ||
                          !gnome.value("enable-animations", true).toBool();
  if (std::exchange(isContrastHigh_, contrast) != contrast) Q_EMIT isContrastHighChanged();
  if (std::exchange(isMotionReduced_, lessMotion) != lessMotion) Q_EMIT isMotionReducedChanged();
}

}  // namespace velun
