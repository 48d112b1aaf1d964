// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/color_scheme.h"

#include <memory>
#include <QDBusConnection>
#include <QMap>
#include <QObject>
#include <QVariantMap>

class QDBusMessage;
class QDBusServiceWatcher;

namespace velun {

/// The user's preferences for the look of windows, read from the settings portal: the settings that
/// all desktops share, GNOME's and KDE's own, and the name of the GTK theme. There are no
/// preferences where there is no portal. Main thread.
class LookPreferences final : public QObject {
  Q_OBJECT

 public:
  /// Starts reading at once, without blocking. `bus` is the session bus.
  explicit LookPreferences(const QDBusConnection& bus);
  ~LookPreferences() override;

  /// There are no preferences until the portal replies.
  ColorScheme colorScheme() const { return colorScheme_; }
  bool isContrastHigh() const { return isContrastHigh_; }
  bool isMotionReduced() const { return isMotionReduced_; }

 Q_SIGNALS:
  void colorSchemeChanged();
  void isContrastHighChanged();
  void isMotionReducedChanged();

 private Q_SLOTS:
  void settingChanged(const QDBusMessage& signal);
  void readAll();

 private:
  void update();
  /// A key of GNOME's interface settings.
  QVariant gnome(const char* key) const;
  ColorScheme readColorScheme() const;
  bool readContrast() const;
  bool readMotion() const;

  QDBusConnection bus_;
  std::unique_ptr<QDBusServiceWatcher> watcher_;
  // Group → key → value.
  QMap<QString, QVariantMap> settings_;
  ColorScheme colorScheme_ = ColorScheme::any;
  bool isContrastHigh_ = false;
  bool isMotionReduced_ = false;
};

}  // namespace velun
