// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/application_adaptor.h"

#include "platform/desktop/linux/dbus_application_service.h"

namespace velun {

ApplicationAdaptor::ApplicationAdaptor(QObject* parent, DBusApplicationService& service)
    : QDBusAbstractAdaptor(parent), service_(service) {}

namespace {

/// Lets Qt pass the launcher's token to a Wayland compositor with the next window that it brings to
/// the front.
void takeActivationToken(const QVariantMap& platformData) {
  for (const char* key : {"activation-token", "desktop-startup-id"}) {
    const QString token = platformData.value(QLatin1String(key)).toString();
    if (token.isEmpty()) continue;
    qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
    return;
  }
}

}  // namespace

void ApplicationAdaptor::Activate(const QVariantMap& platformData) {
  takeActivationToken(platformData);
  Q_EMIT service_.activated();
}

void ApplicationAdaptor::Open(const QStringList& uris, const QVariantMap& platformData) {
  takeActivationToken(platformData);
  QList<QUrl> files;
  for (const QString& uri : uris) files.append(QUrl(uri));
  // Queued, so that the caller gets its reply first: opening may show an alert.
  QMetaObject::invokeMethod(
      &service_, [this, files] { Q_EMIT service_.openRequested(files); }, Qt::QueuedConnection);
}

void ApplicationAdaptor::ActivateAction(const QString& name, const QVariantList& parameters,
                                        const QVariantMap& platformData,
                                        const QDBusMessage& message) {
  takeActivationToken(platformData);
  const std::optional<QString> problem = service_.carryOut(name, parameters);
  if (!problem) return;
  message.setDelayedReply(true);
  service_.bus().send(message.createErrorReply(QDBusError::InvalidArgs, *problem));
}

}  // namespace velun
