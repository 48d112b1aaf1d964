// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "audio/speech_recognition_event.h"
#include "platform/foundation/failure.h"

namespace velun {

/// A start of the engine that failed, with the stage at which it did.
class StartFailure final : public Failure {
 public:
  StartFailure(const QString& description, FailureStage stage)
      : Failure(description), stage_(stage) {}

  FailureStage stage() const { return stage_; }

 private:
  FailureStage stage_;
};

}  // namespace velun
