// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/application_service.h"

#include <optional>
#include <QDBusConnection>

namespace velun {

class StateAdaptor;

/// The application service on the session bus, under a name that only one process can own.
class DBusApplicationService final : public ApplicationService {
  Q_OBJECT

 public:
  /// `name` is the bus name, such as "app.velun.Velun"; the object path is derived from it.
  explicit DBusApplicationService(const QString& name,
                                  const QDBusConnection& bus = QDBusConnection::sessionBus());

  Claim claim() override;
  /// Files that this launch shall open: passed on to the running instance by `claim`, or announced
  /// by `openRequested` once the event loop runs. Call it before `claim`.
  void setFiles(const QList<QUrl>& files) { files_ = files; }
  void setActions(const std::vector<ApplicationAction>& actions) override;

  const QDBusConnection& bus() const { return bus_; }
  const std::vector<ApplicationAction>& actions() const { return actions_; }
  /// Null if there is no action of that name.
  const ApplicationAction* action(const QString& name) const;

  /// Carries out an action for a caller. Returns what is wrong with the request, for developers.
  std::optional<QString> carryOut(const QString& name, const QVariantList& parameters);

 private:
  Claim forwardLaunch();
  Claim granted();

  QString name_;
  QString path_;
  QDBusConnection bus_;
  StateAdaptor* state_;
  std::vector<ApplicationAction> actions_;
  QList<QUrl> files_;
};

}  // namespace velun
