// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/audio_platform.h"
#include "platform/audio/linux/pipewire_connection.h"
#include "platform/foundation/clock.h"

#include <memory>
#include <vector>

namespace velun {

/// The sinks and sources of PipeWire, and the programs that play. Connects again when PipeWire has
/// ended.
class PipeWireTargets final : public AudioTargets {
  Q_OBJECT

 public:
  /// `clock` outlives it.
  explicit PipeWireTargets(Clock& clock);
  ~PipeWireTargets() override;

  std::vector<AudioTarget> list() const override { return targets_; }

 private:
  void connectToServer();
  void review();

  Clock& clock_;
  std::unique_ptr<PipeWireLoop> loop_;
  std::unique_ptr<PipeWireConnection> connection_;
  std::unique_ptr<ScheduledCall> reconnectCall_;
  std::vector<AudioTarget> targets_;
};

}  // namespace velun
