// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QSocketNotifier>

namespace velun {

/// Reports SIGTERM and SIGINT on the main thread. At most one instance may exist.
class TerminationSignals final : public QObject {
  Q_OBJECT

 public:
  TerminationSignals();
  /// From then on both signals are ignored.
  ~TerminationSignals() override;

 Q_SIGNALS:
  /// Emitted once for each signal.
  void received();

 private:
  void drain();

  QSocketNotifier notifier_;
};

}  // namespace velun
