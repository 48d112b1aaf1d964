// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/action_description.h"

#include <QDBusMetaType>

namespace velun {

ActionDescription describe(const ApplicationAction& action) {
  ActionDescription description;
  description.isEnabled = action.isEnabled;
  description.parameterType = QDBusSignature(action.parameterType);
  if (action.state.isValid()) description.state.append(action.state);
  return description;
}

QDBusArgument& operator<<(QDBusArgument& argument, const ActionDescription& description) {
  argument.beginStructure();
  argument << description.isEnabled << description.parameterType << description.state;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, ActionDescription& description) {
  argument.beginStructure();
  argument >> description.isEnabled >> description.parameterType >> description.state;
  argument.endStructure();
  return argument;
}

void registerActionTypes() {
  qDBusRegisterMetaType<ActionDescription>();
  qDBusRegisterMetaType<ActionDescriptions>();
  qDBusRegisterMetaType<QMap<QString, bool>>();
}

}  // namespace velun
