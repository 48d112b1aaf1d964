// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/modal_question.h"

#include <deque>
#include <vector>

namespace velun::test {

/// Answers modal questions from a list; after the end of the list as if the alert was closed.
class ScriptedQuestion final : public ModalQuestion {
 public:
  std::optional<int> ask(const Question& question) override {
    asked.push_back(question);
    if (answers.empty()) return std::nullopt;
    const std::optional<int> answer = answers.front();
    answers.pop_front();
    return answer;
  }

  std::deque<std::optional<int>> answers;
  std::vector<Question> asked;
};

}  // namespace velun::test
