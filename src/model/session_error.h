// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/failure.h"

namespace velun {

/// A refusal to read or write a session, with one finished text.
class SessionError final : public Failure {
 public:
  using Failure::Failure;
};

}  // namespace velun
