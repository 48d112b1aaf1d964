// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class QVariant;

namespace velun {

class AppCommands;
class ApplicationService;
class CaptionViewModel;

/// Publishes the commands as D-Bus actions with their state, and carries out the actions that other
/// programs request. The names are those in `AppCommands::rows`. Main thread.
class RemoteCommands final : public QObject {
  Q_OBJECT

 public:
  /// All references must outlive it.
  RemoteCommands(const AppCommands& commands, const CaptionViewModel& model,
                 ApplicationService& application);

 private:
  void publish();
  void carryOut(const QString& name, const QVariant& parameter);

  const AppCommands& commands_;
  const CaptionViewModel& model_;
  ApplicationService& application_;
};

}  // namespace velun
