// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "audio/lag_status.h"
#include "platform/foundation/clock.h"

#include <memory>
#include <optional>
#include <QObject>
#include <QString>

namespace velun {

/// The status text of a run. Of several, the first is shown: the sound system is not responding,
/// the device is not connected, the recognizer is too slow, a brief notice, a notice. Main thread.
class RunStatus final : public QObject {
  Q_OBJECT

 public:
  /// `clock` must outlive it.
  explicit RunStatus(Clock& clock) : clock_(clock) {}

  void setInterrupted(bool isInterrupted);
  /// The name of a device that is not connected; nullopt when there is none.
  void setMissingDevice(const std::optional<QString>& name);

  /// See `LagStatus`.
  void setBehind(bool isBehind);
  void addSkipped(double seconds);
  void advise(const QString& advice);

  /// Shows what is missing in this run; an empty text ends that.
  void setNotice(const QString& notice);
  void showBriefly(const QString& notice);

  /// Ends all texts but that of a missing device.
  void clear();
  /// The same, for a text that another one has replaced: emits no signal.
  void forget();

 Q_SIGNALS:
  /// Localized; nullopt when there is nothing to say.
  void changed(const std::optional<QString>& text);

 private:
  std::optional<QString> text(double now) const;
  void update();

  Clock& clock_;
  bool isInterrupted_ = false;
  std::optional<QString> missingDevice_;
  LagStatus lag_;
  std::optional<QString> notice_;
  /// Shown until the call.
  std::optional<QString> briefNotice_;
  std::unique_ptr<ScheduledCall> briefNoticeEnd_;
  /// When a text about skipped audio ends.
  std::unique_ptr<ScheduledCall> nextChange_;
  std::optional<QString> shown_;
};

}  // namespace velun
