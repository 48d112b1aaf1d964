// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/contrast_preference.h"

#include <array>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QMap>

namespace velun {

namespace {

constexpr auto kService = "org.freedesktop.portal.Desktop";
constexpr auto kPath = "/org/freedesktop/portal/desktop";
constexpr auto kInterface = "org.freedesktop.portal.Settings";

struct Setting {
  const char* group;
  const char* key;
  bool (*asks)(const QVariant& value);
};

constexpr std::array<Setting, 3> kSettings = {{
    // 0: no preference, 1: higher; unknown values count as none.
    {"org.freedesktop.appearance", "contrast",
     [](const QVariant& v) {
       return v.toUInt() == 1;
     }},
    {"org.gnome.desktop.a11y.interface", "high-contrast",
     [](const QVariant& v) {
       return v.toBool();
     }},
    // "HighContrast" and "HighContrastInverse".
    {"org.gnome.desktop.interface", "gtk-theme",
     [](const QVariant& v) {
       return v.toString().startsWith(QLatin1String("HighContrast"));
     }},
}};

QString nameOf(const Setting& setting) {
  return QStringLiteral("%1 %2").arg(QLatin1String(setting.group), QLatin1String(setting.key));
}

}  // namespace

ContrastPreference::ContrastPreference(const QDBusConnection& bus) : bus_(bus) {
  if (!bus_.isConnected()) return;
  // The whole message: so early in the program the toolkit does not know yet of slots with
  // variants.
  bus_.connect(kService, kPath, kInterface, "SettingChanged", this,
               SLOT(settingChanged(QDBusMessage)));
  // One that comes back may have been restarted because what it would say has changed.
  watcher_ = std::make_unique<QDBusServiceWatcher>(kService, bus_,
                                                   QDBusServiceWatcher::WatchForRegistration);
  connect(watcher_.get(), &QDBusServiceWatcher::serviceRegistered, this,
          &ContrastPreference::readAll);
  readAll();
}

ContrastPreference::~ContrastPreference() = default;

void ContrastPreference::readAll() {
  QStringList groups;
  for (const Setting& setting : kSettings) groups << QLatin1String(setting.group);
  QDBusMessage call = QDBusMessage::createMethodCall(kService, kPath, kInterface, "ReadAll");
  call << groups;
  auto* answer = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
  connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
    answer->deleteLater();
    const QDBusMessage reply = answer->reply();
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != "a{sa{sv}}") return;
    const auto read = qdbus_cast<QMap<QString, QVariantMap>>(reply.arguments().constFirst());
    QSet<QString> asking;
    for (const Setting& setting : kSettings) {
      const QVariant value = read.value(setting.group).value(setting.key);
      if (setting.asks(value)) asking.insert(nameOf(setting));
    }
    replace(asking);
  });
}

void ContrastPreference::settingChanged(const QDBusMessage& signal) {
  if (signal.signature() != "ssv") return;
  const QString group = signal.arguments()[0].toString();
  const QString key = signal.arguments()[1].toString();
  const QVariant value = signal.arguments()[2].value<QDBusVariant>().variant();
  for (const Setting& setting : kSettings) {
    if (group != QLatin1String(setting.group) || key != QLatin1String(setting.key)) continue;
    QSet<QString> asking = asking_;
    if (setting.asks(value)) {
      asking.insert(nameOf(setting));
    } else {
      asking.remove(nameOf(setting));
    }
    replace(asking);
  }
}

void ContrastPreference::replace(const QSet<QString>& asking) {
  const bool before = isHigh();
  asking_ = asking;
  if (isHigh() != before) Q_EMIT isHighChanged();
}

}  // namespace velun
