// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/audio_source.h"
#include "platform/audio/audio_target.h"

#include <memory>
#include <vector>

namespace velun {

/// The devices and the programs whose sound can be captured. The list is updated while this object
/// exists. Main thread.
class AudioTargets : public QObject {
  Q_OBJECT

 public:
  /// Outputs first, then inputs, then the programs that play now, each sorted by name; nothing of
  /// kind `otherPrograms`. Empty while there is no connection to the sound server.
  virtual std::vector<AudioTarget> list() const = 0;

 Q_SIGNALS:
  void changed();
};

/// Creates sources. Must outlive the objects that it creates. Main thread.
class AudioPlatform {
 public:
  virtual ~AudioPlatform() = default;

  virtual std::unique_ptr<AudioTargets> followTargets() = 0;
  virtual std::unique_ptr<AudioSource> makeSource(const AudioTarget& target) = 0;
};

}  // namespace velun
