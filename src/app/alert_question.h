// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/modal_question.h"

namespace velun {

/// Asks in a modal alert on the screen.
class AlertQuestion final : public ModalQuestion {
 public:
  std::optional<int> ask(const Question& question) override;
};

}  // namespace velun
