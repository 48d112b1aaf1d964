// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/linux/apertium/apertium_mode.h"
#include "platform/translation/linux/apertium/stage_pipeline.h"
#include "platform/translation/text_translator.h"

#include <memory>
#include <optional>

namespace velun {

/// Translates with the programs of an Apertium mode, which keep running between texts. When one of
/// them dies, all are restarted and the current text is retried once.
class ApertiumTranslator final : public TextTranslator {
 public:
  explicit ApertiumTranslator(ApertiumMode mode) : mode_(std::move(mode)) {}

  void load() override;
  QString translate(const QString& text, std::stop_token stop) override;

  /// The process ids of the programs, in order; empty before `load`.
  std::vector<pid_t> processes() const;

 private:
  /// None when a program died. Throws like `translate` for everything else.
  std::optional<QString> attempt(const QString& text, const std::stop_token& stop);

  ApertiumMode mode_;
  std::unique_ptr<StagePipeline> pipeline_;
};

}  // namespace velun
