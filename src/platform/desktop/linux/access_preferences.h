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

/// What the user asks of all programs to be able to use them: in the settings that desktops share,
/// in GNOME's own, or by the name of the theme. All of them are read from the settings portal;
/// where there is none the answers are no. Main thread.
class AccessPreferences final : public QObject {
  Q_OBJECT

 public:
  /// `bus` is the session's. Asks at once, without waiting.
  explicit AccessPreferences(const QDBusConnection& bus);
  ~AccessPreferences() override;

  /// False until the portal answers, like the next.
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
  // Group → key → value, as far as they are known here.
  QMap<QString, QVariantMap> settings_;
  bool isContrastHigh_ = false;
  bool isMotionReduced_ = false;
};

}  // namespace velun
