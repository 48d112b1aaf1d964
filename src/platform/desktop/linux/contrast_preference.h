// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QSet>

class QDBusMessage;
class QDBusServiceWatcher;

namespace velun {

/// Whether the user asks the desktop for higher contrast: in the setting that desktops share, in
/// GNOME's own, or by the name of the theme. All of them are read from the settings portal; where
/// there is none the answer is no. Main thread.
class ContrastPreference final : public QObject {
  Q_OBJECT

 public:
  /// `bus` is the session's. Asks at once, without waiting.
  explicit ContrastPreference(const QDBusConnection& bus);
  ~ContrastPreference() override;

  /// False until the portal answers.
  bool isHigh() const { return !asking_.isEmpty(); }

 Q_SIGNALS:
  void isHighChanged();

 private Q_SLOTS:
  void settingChanged(const QDBusMessage& signal);

 private:
  void readAll();
  void replace(const QSet<QString>& asking);

  QDBusConnection bus_;
  std::unique_ptr<QDBusServiceWatcher> watcher_;
  // The settings that ask for it, as "group key".
  QSet<QString> asking_;
};

}  // namespace velun
