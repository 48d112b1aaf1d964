// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/file_descriptor.h"

#include <chrono>
#include <QByteArray>
#include <QStringList>
#include <stop_token>
#include <sys/types.h>
#include <vector>

namespace velun {

/// Programs that stay alive, the output of each being the input of the next, and answer requests
/// one after the other. One thread.
class StagePipeline {
 public:
  /// Starts the programs. One that cannot be started shows at the first request.
  explicit StagePipeline(const std::vector<QStringList>& stages);

  /// Ends the programs at once.
  ~StagePipeline();

  StagePipeline(const StagePipeline&) = delete;
  StagePipeline& operator=(const StagePipeline&) = delete;

  /// Whether every program runs and nothing unexpected has come out of the last one.
  bool isHealthy();

  enum class Outcome { answered, broken, timedOut, stopped };

  struct Answer {
    Outcome outcome = Outcome::broken;
    QByteArray text;  ///< without its NUL
  };

  /// Writes a request, which ends in NUL, and reads up to the NUL of its answer. After any other
  /// outcome than `answered` the pipeline cannot be used any more.
  Answer ask(const QByteArray& request, std::chrono::milliseconds patience,
             const std::stop_token& stop);

  /// The process ids, in order.
  const std::vector<pid_t>& processes() const { return processes_; }

 private:
  bool write(const QByteArray& request, qsizetype& written);
  bool read(QByteArray& answer);

  FileDescriptor input_;
  FileDescriptor output_;
  std::vector<pid_t> processes_;
  bool runs_ = false;  // every program was started
};

}  // namespace velun
