// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusAbstractAdaptor>
#include <QVariantMap>

namespace velun {

class DBusApplicationService;

/// The interface `app.velun.Velun`: the state of the actions, for programs that show it. Every
/// change emits `PropertiesChanged`. (`org.gtk.Actions` offers the same in another form, but QtDBus
/// cannot send the empty signature that it uses for actions without a parameter.)
class StateAdaptor final : public QDBusAbstractAdaptor {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "app.velun.Velun")
  /// Action names, and whether each is enabled.
  Q_PROPERTY(QVariantMap Actions READ actions)
  /// The states of the actions that have one, by name: "running", "input" and others.
  Q_PROPERTY(QVariantMap State READ state)

 public:
  StateAdaptor(QObject* parent, DBusApplicationService& service);

  QVariantMap actions() const;
  QVariantMap state() const;

 private:
  DBusApplicationService& service_;
};

}  // namespace velun
