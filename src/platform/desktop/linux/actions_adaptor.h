// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/linux/action_description.h"

#include <QDBusAbstractAdaptor>
#include <QDBusContext>
#include <QDBusVariant>
#include <QStringList>
#include <QVariantMap>

namespace velun {

class DBusApplicationService;

/// The interface `org.gtk.Actions`: the actions with their state, for those who show them.
class ActionsAdaptor final : public QDBusAbstractAdaptor, protected QDBusContext {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.gtk.Actions")

 public:
  ActionsAdaptor(QObject* parent, DBusApplicationService& service);

 public Q_SLOTS:
  QStringList List() const;
  bool Describe(const QString& name, QDBusSignature& parameterType, QVariantList& state) const;
  velun::ActionDescriptions DescribeAll() const;
  void Activate(const QString& name, const QVariantList& parameters,
                const QVariantMap& platformData);
  void SetState(const QString& name, const QDBusVariant& state, const QVariantMap& platformData);

 Q_SIGNALS:
  void Changed(const QStringList& removed, const QMap<QString, bool>& enabled,
               const QVariantMap& states, const velun::ActionDescriptions& added);

 private:
  void carryOut(const QString& name, const QVariantList& parameters);

  DBusApplicationService& service_;
};

}  // namespace velun
