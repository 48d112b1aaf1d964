// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <map>
#include <mutex>
#include <QString>

namespace velun {

/// How fast models run on this computer, measured when they are first used and remembered beside
/// each model. Any thread.
class ModelSpeeds {
 public:
  /// Slower than this a line of ordinary length is translated half a second after it was heard.
  static constexpr double kSlowMillisecondsPerToken = 25;

  /// How many texts are measured before a model is judged.
  static constexpr int kTexts = 5;

  /// Counts one text that was translated with the model in `folder`.
  void add(const QString& folder, double millisecondsPerToken);

  /// Whether the model in `folder` was found too slow, now or in an earlier run.
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
