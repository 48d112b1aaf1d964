// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/application_adaptor.h"

#include "platform/desktop/linux/dbus_application_service.h"

namespace velun {

ApplicationAdaptor::ApplicationAdaptor(QObject* parent, DBusApplicationService& service)
    : QDBusAbstractAdaptor(parent), service_(service) {}

void ApplicationAdaptor::Activate(const QVariantMap&) {
  Q_EMIT service_.activated();
}

void ApplicationAdaptor::Open(const QStringList& uris, const QVariantMap&) {
  QList<QUrl> files;
  for (const QString& uri : uris) files.append(QUrl(uri));
  // Queued, so that the caller gets its reply first: opening may show an alert.
  QMetaObject::invokeMethod(
      &service_, [this, files] { Q_EMIT service_.openRequested(files); }, Qt::QueuedConnection);
}

void ApplicationAdaptor::ActivateAction(const QString& name, const QVariantList& parameters,
                                        const QVariantMap&, const QDBusMessage& message) {
  const std::optional<QString> problem = service_.carryOut(name, parameters);
  if (!problem) return;
  message.setDelayedReply(true);
  service_.bus().send(message.createErrorReply(QDBusError::InvalidArgs, *problem));
}

}  // namespace velun
