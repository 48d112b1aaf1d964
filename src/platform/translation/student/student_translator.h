// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/language_pair.h"
#include "platform/translation/student/student_engine.h"
#include "platform/translation/text_translator.h"

#include <functional>
#include <memory>

namespace velun {

/// Translates with one downloaded model. Loads it at the first use.
class StudentTranslator final : public TextTranslator {
 public:
  /// Called after every text, on the thread that translates.
  using SpeedReport = std::function<void(double millisecondsPerToken)>;

  /// `use` is kept as long as the translator exists.
  StudentTranslator(StudentFiles files, LanguagePair pair, SpeedReport reportSpeed = {},
                    std::shared_ptr<const void> use = nullptr);

  void load() override;
  QString translate(const QString& text, std::stop_token stop) override;

 private:
  StudentFiles files_;
  LanguagePair pair_;
  SpeedReport reportSpeed_;
  std::shared_ptr<const void> use_;
  std::unique_ptr<const StudentEngine> engine_;
};

}  // namespace velun
