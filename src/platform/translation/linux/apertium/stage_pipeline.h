// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/process_pipeline.h"

#include <memory>
#include <stop_token>

namespace velun {

/// Apertium's programs, kept running, with requests and answers that end in NUL. One thread.
class StagePipeline {
 public:
  /// Starts the programs. If one cannot be started, every request is `broken`.
  explicit StagePipeline(const std::vector<QStringList>& stages);

  /// Whether every program is running and there is no unexpected output.
  bool isHealthy() const { return pipeline_ && pipeline_->isIdle(); }

  enum class Outcome { answered, broken, timedOut, stopped };

  struct Answer {
    Outcome outcome = Outcome::broken;
    QByteArray text;  ///< without its NUL
  };

  /// Writes a request, which must end in NUL, and reads its answer. After any outcome other than
  /// `answered` this object cannot be used any more.
  Answer ask(const QByteArray& request, std::chrono::milliseconds timeout,
             const std::stop_token& stop);

  /// In order; empty if a program could not be started.
  std::vector<pid_t> processIds() const;

 private:
  std::unique_ptr<ProcessPipeline> pipeline_;
};

}  // namespace velun
