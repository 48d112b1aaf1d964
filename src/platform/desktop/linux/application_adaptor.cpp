// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/application_adaptor.h"

#include "platform/desktop/linux/dbus_application_service.h"

namespace velun {

ApplicationAdaptor::ApplicationAdaptor(QObject* parent, DBusApplicationService& service)
    : QDBusAbstractAdaptor(parent), service_(service) {}

void ApplicationAdaptor::Activate(const QVariantMap&) {
  if (service_.onActivate) service_.onActivate();
}

void ApplicationAdaptor::Open(const QStringList& uris, const QVariantMap&) {
  QList<QUrl> files;
  for (const QString& uri : uris) files.append(QUrl(uri));
  // Opening may show an alert; the caller is not to wait for its answer.
  QMetaObject::invokeMethod(
      &service_,
      [this, files] {
        if (service_.onOpen) service_.onOpen(files);
      },
      Qt::QueuedConnection);
}

void ApplicationAdaptor::ActivateAction(const QString& name, const QVariantList& parameters,
                                        const QVariantMap&, const QDBusMessage& message) {
  const std::optional<QString> problem = service_.carryOut(name, parameters);
  if (!problem) return;
  message.setDelayedReply(true);
  service_.bus().send(message.createErrorReply(QDBusError::InvalidArgs, *problem));
}

}  // namespace velun
