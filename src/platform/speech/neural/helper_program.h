// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/helper/recognizer_settings.h"
#include "platform/speech/neural/helper_process.h"

#include <memory>
#include <QString>

namespace velun {

/// The helper program, whose processes are shared by all copies of this value: those who need the
/// same settings at the same time use one process, which loads the models once. Any thread.
class HelperProgram {
 public:
  // Implicit, for those who share with nobody.
  HelperProgram(const QString& path);
  HelperProgram(const char* path) : HelperProgram(QString(path)) {}

  /// A connection to a process with these settings, which was asked to load its models; their
  /// `ready` has not been received. With `isAlone` nobody else gets a connection to it. Throws
  /// `HelperEnded`.
  std::unique_ptr<HelperProcess> connect(const RecognizerSettings& settings,
                                         std::chrono::milliseconds timeout, bool isAlone) const;

 private:
  struct Shared;

  QString path_;
  std::shared_ptr<Shared> shared_;
};

}  // namespace velun
