// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/state_adaptor.h"

#include "platform/desktop/linux/dbus_application_service.h"

namespace velun {

StateAdaptor::StateAdaptor(QObject* parent, DBusApplicationService& service)
    : QDBusAbstractAdaptor(parent), service_(service) {}

QVariantMap StateAdaptor::actions() const {
  QVariantMap actions;
  for (const ApplicationAction& action : service_.actions()) {
    actions.insert(action.name, action.isEnabled);
  }
  return actions;
}

QVariantMap StateAdaptor::state() const {
  QVariantMap state;
  for (const ApplicationAction& action : service_.actions()) {
    if (action.state.isValid()) state.insert(action.name, action.state);
  }
  return state;
}

}  // namespace velun
