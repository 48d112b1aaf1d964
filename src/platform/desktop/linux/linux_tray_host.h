// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/tray_host.h"

#include <memory>
#include <QDBusConnection>

class QDBusServiceWatcher;

namespace velun {

class Clock;
class EmbeddedTrayWatch;
class ScheduledCall;

/// Looks for a StatusNotifier host on the session bus and for an XEmbed tray on the X display.
/// Prefers the former where both exist.
class LinuxTrayHost final : public TrayHost {
  Q_OBJECT

 public:
  /// `clock` must outlive this object.
  explicit LinuxTrayHost(Clock& clock, const QDBusConnection& bus = QDBusConnection::sessionBus());
  ~LinuxTrayHost() override;

  void search() override;
  std::optional<Protocol> protocol() const override { return protocol_; }
  bool coloursSymbolicIcons() const override;
  std::optional<std::uint32_t> foreground() const override;

 private Q_SLOTS:
  void askWatcher();

 private:
  void watchBus();
  void finish(Protocol protocol);
  void considerEmbedded();

  Clock& clock_;
  QDBusConnection bus_;
  std::unique_ptr<QDBusServiceWatcher> watcher_;
  std::unique_ptr<EmbeddedTrayWatch> embedded_;
  std::unique_ptr<ScheduledCall> timeout_;
  bool busReplied_ = false;
  std::optional<Protocol> protocol_;
};

}  // namespace velun
