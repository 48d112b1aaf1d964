// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/look_preferences.h"

#include "support/private_bus.h"
#include "support/suite.h"

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QSignalSpy>

using namespace velun;

using SettingGroups = QMap<QString, QVariantMap>;
Q_DECLARE_METATYPE(SettingGroups)
using KeysByGroup = QMap<QString, QByteArrayList>;
Q_DECLARE_METATYPE(KeysByGroup)

namespace {

constexpr auto kPath = "/org/freedesktop/portal/desktop";

/// A double of the settings portal.
class FakePortal final : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

 public:
  explicit FakePortal(const QDBusConnection& bus) : bus_(bus) {
    if (!bus_.registerObject(kPath, this,
                             QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals) ||
        !bus_.registerService("org.freedesktop.portal.Desktop")) {
      throw std::runtime_error("there is a portal already");
    }
  }
  ~FakePortal() override {
    bus_.unregisterService("org.freedesktop.portal.Desktop");
    bus_.unregisterObject(kPath);
  }

  SettingGroups settings;
  int reads = 0;

  void change(const QString& group, const QString& key, const QVariant& value) {
    settings[group][key] = value;
    Q_EMIT SettingChanged(group, key, QDBusVariant(value));
  }

 public Q_SLOTS:
  SettingGroups ReadAll(const QStringList& groups) {
    ++reads;
    SettingGroups read;
    for (const QString& group : groups) {
      if (settings.contains(group)) read[group] = settings[group];
    }
    return read;
  }

 Q_SIGNALS:
  void SettingChanged(const QString& group, const QString& key, const QDBusVariant& value);

 private:
  QDBusConnection bus_;
};

const QString kAppearance = "org.freedesktop.appearance";
const QString kGnome = "org.gnome.desktop.interface";
const QString kKde = "org.kde.kdeglobals.General";

}  // namespace

class LookPreferencesTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    qDBusRegisterMetaType<SettingGroups>();
    qDBusRegisterMetaType<QByteArrayList>();
    qDBusRegisterMetaType<KeysByGroup>();
    bus_ = std::make_unique<test::PrivateBus>();
  }

  void readsPreferencesAtStart_data() {
    QTest::addColumn<QString>("group");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("isHigh");
    const QString gnome = "org.gnome.desktop.interface";
    QTest::newRow("higher") << kAppearance << "contrast" << QVariant(1U) << true;
    QTest::newRow("no preference") << kAppearance << "contrast" << QVariant(0U) << false;
    QTest::newRow("unknown") << kAppearance << "contrast" << QVariant(2U) << false;
    QTest::newRow("dark") << kAppearance << "color-scheme" << QVariant(1U) << false;
    QTest::newRow("GNOME's own") << "org.gnome.desktop.a11y.interface"
                                 << "high-contrast" << QVariant(true) << true;
    QTest::newRow("theme") << gnome << "gtk-theme" << QVariant("HighContrast") << true;
    QTest::newRow("dark theme") << gnome << "gtk-theme" << QVariant("HighContrastInverse") << true;
    QTest::newRow("other theme") << gnome << "gtk-theme" << QVariant("Adwaita") << false;
  }
  void readsPreferencesAtStart() {
    QFETCH(QString, group);
    QFETCH(QString, key);
    QFETCH(QVariant, value);
    QFETCH(bool, isHigh);
    FakePortal portal(bus_->connect());
    portal.settings[group][key] = value;
    LookPreferences preference(bus_->connect());
    QVERIFY(!preference.isContrastHigh());
    const QSignalSpy changes(&preference, &LookPreferences::isContrastHighChanged);
    if (isHigh) {
      QTRY_VERIFY(preference.isContrastHigh());
      return;
    }
    // A change that follows the reply takes effect after it.
    QTRY_COMPARE(portal.reads, 1);
    portal.change("org.gnome.desktop.a11y.interface", "high-contrast", true);
    QTRY_VERIFY(preference.isContrastHigh());
    QCOMPARE(changes.count(), 1);
    portal.change("org.gnome.desktop.a11y.interface", "high-contrast", false);
    QTRY_VERIFY(!preference.isContrastHigh());
  }

  void changesAreAppliedAtOnce() {
    FakePortal portal(bus_->connect());
    LookPreferences preference(bus_->connect());
    const QSignalSpy changes(&preference, &LookPreferences::isContrastHighChanged);
    QTRY_COMPARE(portal.reads, 1);
    portal.change(kAppearance, "contrast", 1U);
    QTRY_VERIFY(preference.isContrastHigh());
    QCOMPARE(changes.count(), 1);
    portal.change("org.gnome.desktop.interface", "gtk-theme", "HighContrast");
    portal.change(kAppearance, "contrast", 0U);
    portal.change("org.gnome.desktop.interface", "gtk-theme", "Adwaita");
    QTRY_VERIFY(!preference.isContrastHigh());
    QCOMPARE(changes.count(), 2);
  }

  void colorSchemeIsReadFromEveryDesktop_data() {
    QTest::addColumn<QString>("group");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("scheme");
    const auto row = [](const char* name, const QString& group, const char* key,
                        const QVariant& value, ColorScheme scheme) {
      QTest::newRow(name) << group << QString(key) << value << int(scheme);
    };
    using enum ColorScheme;
    row("shared dark", kAppearance, "color-scheme", 1U, dark);
    row("shared light", kAppearance, "color-scheme", 2U, light);
    row("shared unknown", kAppearance, "color-scheme", 3U, any);
    row("GNOME dark", kGnome, "color-scheme", "prefer-dark", dark);
    row("GNOME light", kGnome, "color-scheme", "prefer-light", light);
    row("GNOME default", kGnome, "color-scheme", "default", any);
    row("dark theme", kGnome, "gtk-theme", "Adwaita-dark", dark);
    row("inverse theme", kGnome, "gtk-theme", "HighContrastInverse", dark);
    row("contrast theme", kGnome, "gtk-theme", "HighContrast", light);
    row("other theme", kGnome, "gtk-theme", "Adwaita", any);
    row("KDE dark", kKde, "ColorScheme", "BreezeDark", dark);
    row("KDE light", kKde, "ColorScheme", "BreezeLight", light);
    row("KDE other", kKde, "ColorScheme", "Breeze", any);
  }
  void colorSchemeIsReadFromEveryDesktop() {
    QFETCH(QString, group);
    QFETCH(QString, key);
    QFETCH(QVariant, value);
    QFETCH(int, scheme);
    FakePortal portal(bus_->connect());
    portal.settings[group][key] = value;
    // Read together with the scheme, so that its arrival can be awaited.
    portal.settings[kAppearance]["contrast"] = 1U;
    LookPreferences preferences(bus_->connect());
    QVERIFY(preferences.colorScheme() == ColorScheme::any);
    QTRY_VERIFY(preferences.isContrastHigh());
    QCOMPARE(int(preferences.colorScheme()), scheme);
  }

  void sharedColorSchemeHasPriorityAndIsFollowed() {
    FakePortal portal(bus_->connect());
    portal.settings[kGnome]["color-scheme"] = "prefer-dark";
    LookPreferences preferences(bus_->connect());
    const QSignalSpy changes(&preferences, &LookPreferences::colorSchemeChanged);
    QTRY_VERIFY(preferences.colorScheme() == ColorScheme::dark);
    portal.change(kAppearance, "color-scheme", 2U);
    QTRY_VERIFY(preferences.colorScheme() == ColorScheme::light);
    portal.change(kGnome, "color-scheme", "prefer-light");
    portal.change(kAppearance, "color-scheme", 1U);
    QTRY_VERIFY(preferences.colorScheme() == ColorScheme::dark);
    QCOMPARE(changes.count(), 3);
  }

  void kdesOwnSettingsAreRead() {
    FakePortal portal(bus_->connect());
    portal.settings[kKde]["ColorScheme"] = "BreezeHighContrast";
    portal.settings["org.kde.kdeglobals.KDE"]["AnimationDurationFactor"] = "0";
    LookPreferences preferences(bus_->connect());
    QTRY_VERIFY(preferences.isContrastHigh());
    QVERIFY(preferences.isMotionReduced());
    portal.change("org.kde.kdeglobals.KDE", "AnimationDurationFactor", "0.5");
    QTRY_VERIFY(!preferences.isMotionReduced());
    portal.change(kKde, "ColorScheme", "BreezeDark");
    QTRY_VERIFY(!preferences.isContrastHigh());
  }

  void kdeTellsOfChangesThatItsPortalDoesNot() {
    FakePortal portal(bus_->connect());
    portal.settings[kKde]["ColorScheme"] = "BreezeDark";
    LookPreferences preferences(bus_->connect());
    QTRY_VERIFY(preferences.colorScheme() == ColorScheme::dark);
    portal.settings["org.kde.kdeglobals.KDE"]["AnimationDurationFactor"] = "0";
    QDBusMessage signal =
        QDBusMessage::createSignal("/kdeglobals", "org.kde.kconfig.notify", "ConfigChanged");
    signal << QVariant::fromValue(KeysByGroup{{"KDE", {"AnimationDurationFactor"}}});
    QVERIFY(bus_->connect().send(signal));
    QTRY_VERIFY(preferences.isMotionReduced());
    QVERIFY(preferences.colorScheme() == ColorScheme::dark);
  }

  void reducedMotionHasTwoSources() {
    FakePortal portal(bus_->connect());
    portal.settings["org.gnome.desktop.interface"]["enable-animations"] = false;
    LookPreferences preferences(bus_->connect());
    const QSignalSpy changes(&preferences, &LookPreferences::isMotionReducedChanged);
    QTRY_VERIFY(preferences.isMotionReduced());
    portal.change(kAppearance, "reduced-motion", 1U);
    portal.change("org.gnome.desktop.interface", "enable-animations", true);
    portal.change(kAppearance, "contrast", 1U);
    QTRY_VERIFY(preferences.isContrastHigh());
    QVERIFY(preferences.isMotionReduced());
    portal.change(kAppearance, "reduced-motion", 0U);
    QTRY_VERIFY(!preferences.isMotionReduced());
    QCOMPARE(changes.count(), 2);
  }

  void laterPortalIsRead() {
    LookPreferences preference(bus_->connect());
    FakePortal portal(bus_->connect());
    portal.settings[kAppearance]["contrast"] = 1U;
    QTRY_VERIFY(preference.isContrastHigh());
  }

 private:
  std::unique_ptr<test::PrivateBus> bus_;
};

QTEST_GUILESS_MAIN(LookPreferencesTest)
#include "look_preferences_test.moc"
