// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QSocketNotifier>

namespace velun {

/// SIGTERM and SIGINT, told on the main thread. At most one object of it exists.
class TerminationSignals final : public QObject {
  Q_OBJECT

 public:
  TerminationSignals();
  ~TerminationSignals() override;

 Q_SIGNALS:
  /// Once for each signal.
  void received();

 private:
  void drain();

  QSocketNotifier notifier_;
};

}  // namespace velun
