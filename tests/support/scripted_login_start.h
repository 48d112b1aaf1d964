// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/login_start.h"
#include "platform/foundation/failure.h"

namespace velun::test {

/// A start at login that the test controls.
class ScriptedLoginStart final : public LoginStart {
 public:
  bool isPossible() const override { return possible; }
  bool isEnabled() const override { return enabled; }
  void setEnabled(bool now) override {
    if (fails) throw Failure("The folder is read-only.");
    enabled = now;
  }

  bool possible = true;
  bool enabled = false;
  bool fails = false;
};

}  // namespace velun::test
