// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/application_action.h"

#include <QDBusArgument>
#include <QDBusSignature>
#include <QMap>
#include <QVariantList>

namespace velun {

/// An action as `org.gtk.Actions` describes it: D-Bus type (bgav).
struct ActionDescription {
  bool isEnabled = false;
  QDBusSignature parameterType;
  /// The state, or empty.
  QVariantList state;
};

/// By name: D-Bus type a{s(bgav)}.
using ActionDescriptions = QMap<QString, ActionDescription>;

ActionDescription describe(const ApplicationAction& action);

QDBusArgument& operator<<(QDBusArgument& argument, const ActionDescription& description);
const QDBusArgument& operator>>(const QDBusArgument& argument, ActionDescription& description);

/// Makes the types above known to D-Bus; harmless when repeated.
void registerActionTypes();

}  // namespace velun

Q_DECLARE_METATYPE(velun::ActionDescription)
