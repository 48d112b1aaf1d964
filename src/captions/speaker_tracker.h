// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/voice_print.h"

#include <cstddef>
#include <optional>
#include <QString>
#include <vector>

namespace velun {

/// Tells the speakers of one session apart by their voices. The rule is calm: who spoke last goes
/// on speaking unless the voice is clearly another one, and only a long line can bring a new
/// speaker. What was said once is never changed.
class SpeakerTracker {
 public:
  /// The speaker of the next line (model/speaker.h).
  QString next(const VoicePrint& voice);

  /// The user has renamed a speaker: later lines get the new name too.
  void rename(const QString& from, const QString& to);

 private:
  struct Speaker {
    QString name;
    std::vector<float> sum;  ///< of the prints by their lengths; its direction is the mean
    double seconds = 0;
  };

  double similarity(const Speaker& speaker, const VoicePrint& voice) const;
  std::size_t choose(const VoicePrint& voice) const;
  void learn(Speaker& speaker, const VoicePrint& voice) const;

  std::vector<Speaker> speakers_;
  std::size_t last_ = 0;
};

}  // namespace velun
