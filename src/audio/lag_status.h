// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QString>

namespace velun {

/// The words of the status about a recognizer that is too slow. Times are seconds of one monotonic
/// clock. Main thread.
class LagStatus {
 public:
  /// Seconds for which a text about skipped audio is shown at least.
  static constexpr double kShownSeconds = 10;

  void setBehind(bool isBehind) { isBehind_ = isBehind; }

  /// Audio of so many seconds was skipped.
  void addSkipped(double seconds, double now);

  /// Shows the localized `advice` for some time.
  void advise(const QString& advice, double now);

  /// Localized; nullopt when there is nothing to say.
  std::optional<QString> text(double now) const;

  /// When the text changes by itself; nullopt when it does not.
  std::optional<double> nextChange(double now) const;

 private:
  bool isBehind_ = false;
  double skippedSeconds_ = 0;
  double skippedUntil_ = 0;  ///< when the text about it ends
  QString advice_;
  double adviceUntil_ = 0;
};

}  // namespace velun
