// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/linux/screen_cast_graph.h"
#include "platform/foundation/clock.h"

#include <memory>
#include <QObject>

namespace velun {

/// Watches PipeWire for screen casts while this is enabled. Reconnects when PipeWire is not running
/// or restarts. Main thread.
class ScreenCastWatch final : public QObject {
  Q_OBJECT

 public:
  /// `clock` must outlive the watch.
  explicit ScreenCastWatch(Clock& clock);
  ~ScreenCastWatch() override;

  /// Whether PipeWire can be reached now.
  static bool isPossible();

  void setWatching(bool watching);
  bool isConnected() const { return connection_ != nullptr; }

  /// Stays true for a second after the end: a cast that renegotiates ends and starts again.
  bool isCastRunning() const { return isCastRunning_; }

 Q_SIGNALS:
  void castRunningChanged();
  void connectedChanged();

 private:
  class Connection;

  void connectToServer();
  void lost();
  void update();
  void setCastRunning(bool running);

  Clock& clock_;
  std::unique_ptr<Connection> connection_;
  ScreenCastGraph graph_;
  bool isWatching_ = false;
  bool isCastRunning_ = false;
  std::unique_ptr<ScheduledCall> ending_;
  std::unique_ptr<ScheduledCall> retry_;
};

}  // namespace velun
