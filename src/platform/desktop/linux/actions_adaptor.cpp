// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/actions_adaptor.h"

#include "platform/desktop/linux/dbus_application_service.h"

namespace velun {

ActionsAdaptor::ActionsAdaptor(QObject* parent, DBusApplicationService& service)
    : QDBusAbstractAdaptor(parent), service_(service) {}

QStringList ActionsAdaptor::List() const {
  QStringList names;
  for (const ApplicationAction& action : service_.actions()) names.append(action.name);
  return names;
}

bool ActionsAdaptor::Describe(const QString& name, QDBusSignature& parameterType,
                              QVariantList& state) const {
  const ApplicationAction* action = service_.action(name);
  if (!action) {
    if (calledFromDBus()) {
      sendErrorReply(QDBusError::InvalidArgs, QStringLiteral("Unknown action: ") + name);
    }
    return false;
  }
  const ActionDescription description = describe(*action);
  parameterType = description.parameterType;
  state = description.state;
  return description.isEnabled;
}

ActionDescriptions ActionsAdaptor::DescribeAll() const {
  ActionDescriptions descriptions;
  for (const ApplicationAction& action : service_.actions()) {
    descriptions.insert(action.name, describe(action));
  }
  return descriptions;
}

void ActionsAdaptor::Activate(const QString& name, const QVariantList& parameters,
                              const QVariantMap&) {
  carryOut(name, parameters);
}

void ActionsAdaptor::SetState(const QString& name, const QDBusVariant& state, const QVariantMap&) {
  // A state can be asked for where carrying out the action with it as its parameter sets it.
  carryOut(name, {state.variant()});
}

void ActionsAdaptor::carryOut(const QString& name, const QVariantList& parameters) {
  const std::optional<QString> problem = service_.carryOut(name, parameters);
  if (problem && calledFromDBus()) sendErrorReply(QDBusError::InvalidArgs, *problem);
}

}  // namespace velun
