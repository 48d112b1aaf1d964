// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/dbus_application_service.h"

#include "platform/desktop/linux/actions_adaptor.h"
#include "platform/desktop/linux/application_adaptor.h"

#include <algorithm>
#include <QDBusConnectionInterface>
#include <QDBusMessage>

namespace velun {

namespace {

/// How long a launch waits for the running instance to answer, in milliseconds.
constexpr int kForwardTimeout = 3000;

/// What the launcher gave this process so that a window of the other one may come to the front.
QVariantMap platformData() {
  QVariantMap data;
  if (const QString id = qEnvironmentVariable("DESKTOP_STARTUP_ID"); !id.isEmpty()) {
    data.insert("desktop-startup-id", id);
  }
  if (const QString token = qEnvironmentVariable("XDG_ACTIVATION_TOKEN"); !token.isEmpty()) {
    data.insert("activation-token", token);
  }
  return data;
}

}  // namespace

DBusApplicationService::DBusApplicationService(const QString& name)
    : name_(name),
      path_("/" + QString(name).replace('.', '/').replace('-', '_')),
      bus_(QDBusConnection::sessionBus()),
      adaptor_(new ActionsAdaptor(this, *this)) {
  registerActionTypes();
  new ApplicationAdaptor(this, *this);
}

ApplicationService::Claim DBusApplicationService::claim() {
  if (!bus_.isConnected()) return Claim::granted;
  // The object first: a launcher calls it as soon as the name is there.
  bus_.registerObject(path_, this, QDBusConnection::ExportAdaptors);
  const auto reply =
      bus_.interface()->registerService(name_, QDBusConnectionInterface::DontQueueService,
                                        QDBusConnectionInterface::DontAllowReplacement);
  if (!reply.isValid() || reply.value() == QDBusConnectionInterface::ServiceRegistered) {
    return Claim::granted;
  }
  bus_.unregisterObject(path_);
  return forwardLaunch();
}

ApplicationService::Claim DBusApplicationService::forwardLaunch() {
  auto call =
      QDBusMessage::createMethodCall(name_, path_, "org.freedesktop.Application", "Activate");
  call << platformData();
  const QDBusMessage reply = bus_.call(call, QDBus::Block, kForwardTimeout);
  return reply.type() == QDBusMessage::ReplyMessage ? Claim::forwarded : Claim::unanswered;
}

void DBusApplicationService::setActions(const std::vector<ApplicationAction>& actions) {
  const std::vector<ApplicationAction> before = std::exchange(actions_, actions);
  const auto find = [](const std::vector<ApplicationAction>& in, const QString& name) {
    return std::ranges::find(in, name, &ApplicationAction::name);
  };

  QStringList removed;
  QMap<QString, bool> enabled;
  QVariantMap states;
  ActionDescriptions added;
  for (const ApplicationAction& old : before) {
    if (find(actions_, old.name) == actions_.end()) removed.append(old.name);
  }
  for (const ApplicationAction& action : actions_) {
    const auto old = find(before, action.name);
    if (old == before.end() || old->parameterType != action.parameterType) {
      added.insert(action.name, describe(action));
      continue;
    }
    if (old->isEnabled != action.isEnabled) enabled.insert(action.name, action.isEnabled);
    if (old->state != action.state) states.insert(action.name, action.state);
  }
  if (removed.isEmpty() && enabled.isEmpty() && states.isEmpty() && added.isEmpty()) return;
  Q_EMIT adaptor_->Changed(removed, enabled, states, added);
}

const ApplicationAction* DBusApplicationService::action(const QString& name) const {
  const auto found = std::ranges::find(actions_, name, &ApplicationAction::name);
  return found == actions_.end() ? nullptr : &*found;
}

std::optional<QString> DBusApplicationService::carryOut(const QString& name,
                                                        const QVariantList& parameters) {
  const ApplicationAction* known = action(name);
  if (!known) return QStringLiteral("Unknown action: ") + name;
  if (parameters.size() != (known->parameterType.isEmpty() ? 0 : 1)) {
    return QStringLiteral("Wrong number of parameters for ") + name;
  }
  if (known->parameterType == "s" &&
      parameters.first().metaType() != QMetaType::fromType<QString>()) {
    return QStringLiteral("Wrong type of parameter for ") + name;
  }
  // Carried out after the answer: a command may ask the user a question, and the caller need not
  // wait for that.
  if (known->isEnabled) {
    const QVariant parameter = parameters.isEmpty() ? QVariant() : parameters.first();
    QMetaObject::invokeMethod(
        this,
        [this, name, parameter] {
          if (onAction) onAction(name, parameter);
        },
        Qt::QueuedConnection);
  }
  return std::nullopt;
}

}  // namespace velun
