// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/look_preferences.h"

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
constexpr auto kKdePath = "/kdeglobals";
constexpr auto kKdeInterface = "org.kde.kconfig.notify";

const auto kShared = QStringLiteral("org.freedesktop.appearance");
const auto kGnome = QStringLiteral("org.gnome.desktop.interface");
const auto kGnomeAccess = QStringLiteral("org.gnome.desktop.a11y.interface");
const auto kKde = QStringLiteral("org.kde.kdeglobals.General");
const auto kKdeAnimations = QStringLiteral("org.kde.kdeglobals.KDE");
const QStringList kGroups = {kShared, kGnome, kGnomeAccess, kKde, kKdeAnimations};

const auto kContrastTheme = QStringLiteral("HighContrast");
const auto kInverseTheme = QStringLiteral("HighContrastInverse");

}  // namespace

LookPreferences::LookPreferences(const QDBusConnection& bus) : bus_(bus) {
  if (!bus_.isConnected()) return;
  // The slot takes the whole message: QtDBus has not registered QDBusVariant this early.
  bus_.connect(kService, kPath, kInterface, "SettingChanged", this,
               SLOT(settingChanged(QDBusMessage)));
  // KDE's portal does not tell of every change, but KDE does.
  bus_.connect({}, kKdePath, kKdeInterface, "ConfigChanged", this, SLOT(readAll()));
  // A portal that restarts may have other values.
  watcher_ = std::make_unique<QDBusServiceWatcher>(kService, bus_,
                                                   QDBusServiceWatcher::WatchForRegistration);
  connect(watcher_.get(), &QDBusServiceWatcher::serviceRegistered, this, &LookPreferences::readAll);
  readAll();
}

LookPreferences::~LookPreferences() = default;

void LookPreferences::readAll() {
  QDBusMessage call = QDBusMessage::createMethodCall(kService, kPath, kInterface, "ReadAll");
  call << kGroups;
  auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
    watcher->deleteLater();
    const QDBusMessage reply = watcher->reply();
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != "a{sa{sv}}") return;
    settings_ = qdbus_cast<QMap<QString, QVariantMap>>(reply.arguments().constFirst());
    update();
  });
}

void LookPreferences::settingChanged(const QDBusMessage& signal) {
  if (signal.signature() != "ssv") return;
  const QString group = signal.arguments()[0].toString();
  if (!kGroups.contains(group)) return;
  const QString key = signal.arguments()[1].toString();
  settings_[group][key] = signal.arguments()[2].value<QDBusVariant>().variant();
  update();
}

QVariant LookPreferences::gnome(const char* key) const {
  return settings_.value(kGnome).value(QLatin1String(key));
}

ColorScheme LookPreferences::readColorScheme() const {
  switch (settings_.value(kShared).value("color-scheme").toUInt()) {
    case 1:
      return ColorScheme::dark;
    case 2:
      return ColorScheme::light;
    default:  // no preference, or unknown
      break;
  }
  const QString scheme = gnome("color-scheme").toString();
  if (scheme == u"prefer-dark") return ColorScheme::dark;
  if (scheme == u"prefer-light") return ColorScheme::light;
  // Desktops without a setting for it have it in the names of their themes: "Adwaita-dark",
  // "HighContrastInverse" and "HighContrast", "BreezeDark" and "BreezeLight".
  const QString theme = gnome("gtk-theme").toString();
  if (theme.endsWith(u"-dark", Qt::CaseInsensitive) || theme == kInverseTheme) {
    return ColorScheme::dark;
  }
  if (theme == kContrastTheme) return ColorScheme::light;
  const QString colors = settings_.value(kKde).value("ColorScheme").toString();
  if (colors.contains(u"Dark")) return ColorScheme::dark;
  if (colors.contains(u"Light")) return ColorScheme::light;
  return ColorScheme::any;
}

bool LookPreferences::readContrast() const {
  return settings_.value(kShared).value("contrast").toUInt() == 1 ||
         settings_.value(kGnomeAccess).value("high-contrast").toBool() ||
         gnome("gtk-theme").toString().startsWith(kContrastTheme) ||
         // "BreezeHighContrast"; KDE has no setting for it.
         settings_.value(kKde).value("ColorScheme").toString().contains(kContrastTheme);
}

bool LookPreferences::readMotion() const {
  if (settings_.value(kShared).value("reduced-motion").toUInt() == 1) return true;
  const QVariant animations = gnome("enable-animations");
  if (animations.isValid() && !animations.toBool()) return true;
  // A factor of the animations' duration, written as a text.
  const QVariant factor = settings_.value(kKdeAnimations).value("AnimationDurationFactor");
  bool isNumber = false;
  return factor.toDouble(&isNumber) == 0 && isNumber;
}

void LookPreferences::update() {
  const ColorScheme scheme = readColorScheme();
  const bool contrast = readContrast();
  const bool lessMotion = readMotion();
  if (std::exchange(colorScheme_, scheme) != scheme) Q_EMIT colorSchemeChanged();
  if (std::exchange(isContrastHigh_, contrast) != contrast) Q_EMIT isContrastHighChanged();
  if (std::exchange(isMotionReduced_, lessMotion) != lessMotion) Q_EMIT isMotionReducedChanged();
}

}  // namespace velun
