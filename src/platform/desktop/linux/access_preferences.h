// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <QDBusConnection>
#include <QMap>
#include <QObject>
#include <QVariantMap>

class QDBusMessage;
class QDBusServiceWatcher;

namespace velun {

/// The user's accessibility preferences, read from the settings portal: the settings that all
/// desktops share, GNOME's own, and the name of the GTK theme. Everything is false where there is
/// no portal. Main thread.
class AccessPreferences final : public QObject {
  Q_OBJECT

 public:
  /// Starts reading at once, without blocking. `bus` is the session bus.
  explicit AccessPreferences(const QDBusConnection& bus);
  ~AccessPreferences() override;

  /// Both are false until the portal replies.
  bool isContrastHigh() const { return isContrastHigh_; }
  bool isMotionReduced() const { return isMotionReduced_; }

 Q_SIGNALS:
  void isContrastHighChanged();
  void isMotionReducedChanged();

 private Q_SLOTS:
  void settingChanged(const QDBusMessage& signal);

 private:
  void readAll();
  void update();

  QDBusConnection bus_;
  std::unique_ptr<QDBusServiceWatcher> watcher_;
  // Group → key → value.
  QMap<QString, QVariantMap> settings_;
  bool isContrastHigh_ = false;
  bool isMotionReduced_ = false;
};

}  // namespace velun
