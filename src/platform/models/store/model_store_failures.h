// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/failure.h"

#include <cstdint>
#include <QString>

namespace velun {

/// What was fetched is not what it should be.
class DamagedModel final : public Failure {
 public:
  using Failure::Failure;
};

/// What can go wrong while a model is installed, each with a text that says what to do. Any thread.
namespace model_failures {

Failure unreachable(const QString& host);
Failure brokeOff(const QString& reason);
Failure refused(int httpStatus);
Failure insecure();
Failure unexpectedFile();
DamagedModel damaged();
Failure noSpace(std::int64_t neededBytes, std::int64_t freeBytes);
Failure notSaved(const QString& reason);
/// The system has no more threads.
Failure noThread();

}  // namespace model_failures

}  // namespace velun
