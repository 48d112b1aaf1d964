// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/alert_question.h"

#include "ui/common/window_presentation.h"

namespace velun {

std::optional<int> AlertQuestion::ask(const Question& question) {
  return WindowPresentation::ask(question);
}

}  // namespace velun
