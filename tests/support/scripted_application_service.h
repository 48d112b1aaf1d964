// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/application_service.h"

namespace velun::test {

/// An application service without a bus; tests emit its signals.
class ScriptedApplicationService final : public ApplicationService {
 public:
  Claim claim() override { return Claim::granted; }
  void setActions(const std::vector<ApplicationAction>& now) override {
    if (now != actions) ++changes;
    actions = now;
  }

  const ApplicationAction& action(const QString& name) const {
    for (const ApplicationAction& action : actions) {
      if (action.name == name) return action;
    }
    qFatal("There is no action %s", qPrintable(name));
  }

  std::vector<ApplicationAction> actions;
  int changes = 0;
};

}  // namespace velun::test
