// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <stdexcept>

namespace velun::test {

/// A private session bus that ends with this object. Needs an application object.
class PrivateBus {
 public:
  PrivateBus() {
    daemon_.start("dbus-daemon", {"--session", "--nofork", "--print-address=1"});
    if (!daemon_.waitForStarted() || !daemon_.waitForReadyRead()) {
      throw std::runtime_error("dbus-daemon did not start");
    }
    address_ = QString::fromUtf8(daemon_.readLine()).trimmed();
  }
  ~PrivateBus() {
    for (const QString& name : connections_) QDBusConnection::disconnectFromBus(name);
    daemon_.terminate();
    daemon_.waitForFinished();
  }

  const QString& address() const { return address_; }

  /// A new connection, as a program of its own would have.
  QDBusConnection connect() {
    static int count = 0;
    const QString name = QStringLiteral("test-%1").arg(++count);
    connections_.append(name);
    return QDBusConnection::connectToBus(address_, name);
  }

 private:
  QProcess daemon_;
  QString address_;
  QStringList connections_;
};

}  // namespace velun::test
