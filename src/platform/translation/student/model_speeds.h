// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <map>
#include <mutex>
#include <QString>

namespace velun {

/// The speeds of models on this computer, measured at their first use and stored in the folder of
/// each model. Any thread.
class ModelSpeeds {
 public:
  /// A line of 20 tokens then takes half a second.
  static constexpr double kMaxMillisecondsPerToken = 25;

  /// Number of texts to measure before a model can be too slow.
  static constexpr int kTexts = 5;

  /// Adds the measurement of one text that was translated with the model in `folder`.
  void add(const QString& folder, double millisecondsPerToken);

  /// Whether the model in `folder` was measured as too slow, in this or an earlier process.
  bool isTooSlow(const QString& folder);

 private:
  struct Measured {
    int texts = 0;
    double sum = 0;
  };

  std::mutex lock_;
  std::map<QString, Measured> measured_;
};

}  // namespace velun
