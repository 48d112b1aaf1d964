// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusMessage>
#include <QStringList>
#include <QVariantMap>

namespace velun {

class DBusApplicationService;

/// The interface `org.freedesktop.Application`.
class ApplicationAdaptor final : public QDBusAbstractAdaptor {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

 public:
  ApplicationAdaptor(QObject* parent, DBusApplicationService& service);

 public Q_SLOTS:
  void Activate(const QVariantMap& platformData);
  void Open(const QStringList& uris, const QVariantMap& platformData);
  void ActivateAction(const QString& name, const QVariantList& parameters,
                      const QVariantMap& platformData, const QDBusMessage& message);

 private:
  DBusApplicationService& service_;
};

}  // namespace velun
