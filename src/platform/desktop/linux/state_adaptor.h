// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusAbstractAdaptor>
#include <QVariantMap>

namespace velun {

class DBusApplicationService;

/// The interface `app.velun.Velun`: how the actions stand, for programs that show it. The usual
/// `PropertiesChanged` follows every change. (`org.gtk.Actions` has the same in another form, but
/// the toolkit cannot send the empty signature that it uses for actions without a parameter.)
class StateAdaptor final : public QDBusAbstractAdaptor {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "app.velun.Velun")
  /// Action names, and whether each can be carried out now.
  Q_PROPERTY(QVariantMap Actions READ actions)
  /// What the actions that have a state stand at, by their names: "running", "input" and others.
  Q_PROPERTY(QVariantMap State READ state)

 public:
  StateAdaptor(QObject* parent, DBusApplicationService& service);

  QVariantMap actions() const;
  QVariantMap state() const;

 private:
  DBusApplicationService& service_;
};

}  // namespace velun
