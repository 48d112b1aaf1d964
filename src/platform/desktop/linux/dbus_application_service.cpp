// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/dbus_application_service.h"

#include "platform/desktop/linux/application_adaptor.h"
#include "platform/desktop/linux/state_adaptor.h"

#include <algorithm>
#include <QDBusConnectionInterface>
#include <QDBusMessage>

namespace velun {

namespace {

/// How long a second launch waits for the reply of the running instance, in milliseconds.
constexpr int kForwardTimeout = 3000;

constexpr auto kStateInterface = "app.velun.Velun";

/// The launcher's tokens, which allow the running instance to bring a window to the front.
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

DBusApplicationService::DBusApplicationService(const QString& name, const QDBusConnection& bus)
    : name_(name),
      path_("/" + QString(name).replace('.', '/').replace('-', '_')),
      bus_(bus),
      state_(new StateAdaptor(this, *this)) {
  new ApplicationAdaptor(this, *this);
}

ApplicationService::Claim DBusApplicationService::claim() {
  if (!bus_.isConnected()) return granted();
  // The object first: a launcher calls it as soon as the name exists.
  bus_.registerObject(path_, this, QDBusConnection::ExportAdaptors);
  const auto reply =
      bus_.interface()->registerService(name_, QDBusConnectionInterface::DontQueueService,
                                        QDBusConnectionInterface::DontAllowReplacement);
  if (!reply.isValid() || reply.value() == QDBusConnectionInterface::ServiceRegistered) {
    return granted();
  }
  bus_.unregisterObject(path_);
  return forwardLaunch();
}

ApplicationService::Claim DBusApplicationService::forwardLaunch() {
  auto call = QDBusMessage::createMethodCall(name_, path_, "org.freedesktop.Application",
                                             files_.isEmpty() ? "Activate" : "Open");
  if (!files_.isEmpty()) call << QUrl::toStringList(files_, QUrl::FullyEncoded);
  call << platformData();
  const QDBusMessage reply = bus_.call(call, QDBus::Block, kForwardTimeout);
  return reply.type() == QDBusMessage::ReplyMessage ? Claim::forwarded : Claim::unanswered;
}

ApplicationService::Claim DBusApplicationService::granted() {
  if (!files_.isEmpty()) {
    QMetaObject::invokeMethod(
        this, [this] { Q_EMIT openRequested(files_); }, Qt::QueuedConnection);
  }
  return Claim::granted;
}

void DBusApplicationService::setActions(const std::vector<ApplicationAction>& actions) {
  const QVariantMap oldActions = state_->actions();
  const QVariantMap oldState = state_->state();
  actions_ = actions;
  QVariantMap changed;
  if (state_->actions() != oldActions) changed.insert("Actions", state_->actions());
  if (state_->state() != oldState) changed.insert("State", state_->state());
  if (changed.isEmpty() || !bus_.isConnected()) return;
  auto signal =
      QDBusMessage::createSignal(path_, "org.freedesktop.DBus.Properties", "PropertiesChanged");
  signal << kStateInterface << changed << QStringList();
  bus_.send(signal);
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
  // Queued, so that the caller gets its reply first: a command may ask the user a question.
  if (known->isEnabled) {
    const QVariant parameter = parameters.isEmpty() ? QVariant() : parameters.first();
    QMetaObject::invokeMethod(
        this, [this, name, parameter] { Q_EMIT actionRequested(name, parameter); },
        Qt::QueuedConnection);
  }
  return std::nullopt;
}

}  // namespace velun
