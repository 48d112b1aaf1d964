// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <QCoroTask>
#include <QObject>
#include <QString>
#include <span>

namespace velun {

/// Captures one target. Made for one run: started once, stopped once. Main thread, except that the
/// buffer handler is called on a capture thread, one call at a time.
class AudioSource : public QObject {
  Q_OBJECT

 public:
  /// Samples per second.
  static constexpr int kSampleRate = 16'000;

  /// Takes the next mono samples, finite and at full scale between −1 and 1. They are valid only
  /// during the call.
  using Handler = std::function<void(std::span<const float>)>;

  /// Returns when the capture is set up; `handler` may be called before that. Throws `Failure` with
  /// the stage, the reason and what to do, or `Cancelled` when `stop` is called before the end.
  /// Never blocks.
  virtual QCoro::Task<> start(Handler handler) = 0;

  /// No handler call is running or follows once this returns, and no signal is emitted any more.
  /// Harmless without a successful `start`. Never blocks.
  virtual void stop() = 0;

 Q_SIGNALS:
  /// The sound server or its session manager has ended. The source tries to reconnect; `resumed`
  /// or `failed` follows unless `stop` is called first.
  void interrupted();
  /// The source has reconnected.
  void resumed();
  /// The target's device, which has an id, is not there: the capture goes on when it comes back.
  /// Also emitted by a start, which succeeds without the device. Never for the default device.
  void deviceMissing();
  /// It is back.
  void deviceFound();
  /// Reconnecting has failed for too long, and the source has stopped. `message` says why and what
  /// to do. The source may be destroyed in a slot.
  void failed(const QString& message);
};

}  // namespace velun
