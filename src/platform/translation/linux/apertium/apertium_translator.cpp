// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/linux/apertium/apertium_translator.h"

#include "language/localization.h"
#include "platform/foundation/failure.h"
#include "platform/translation/linux/apertium/apertium_stream.h"

namespace velun {

namespace {

// A sentence takes milliseconds. The timeout allows for a machine that swaps.
constexpr std::chrono::seconds kResponseTimeout{30};

}  // namespace

void ApertiumTranslator::load() {
  if (pipeline_ && pipeline_->isHealthy()) return;
  pipeline_.reset();
  pipeline_ = std::make_unique<StagePipeline>(mode_.stages);
}

QString ApertiumTranslator::translate(const QString& text, std::stop_token stop) {
  std::optional<QString> translation = attempt(text, stop);
  // Retry once: the program may have been killed from outside. A second time the text is the cause.
  if (!translation) translation = attempt(text, stop);
  if (translation) return *translation;
  throw Failure(L("The translator stopped unexpectedly.", "번역기가 갑자기 종료되었습니다."));
}

std::optional<QString> ApertiumTranslator::attempt(const QString& text,
                                                   const std::stop_token& stop) {
  load();
  using Outcome = StagePipeline::Outcome;
  const StagePipeline::Answer answer =
      pipeline_->ask(apertium_stream::encode(text), kResponseTimeout, stop);
  std::optional<QString> translation;
  if (answer.outcome == Outcome::answered) translation = apertium_stream::decode(answer.text);
  if (!translation) pipeline_.reset();
  if (answer.outcome == Outcome::stopped) throw Cancelled();
  if (answer.outcome == Outcome::timedOut) {
    throw Failure(L("The translator does not answer.", "번역기가 응답하지 않습니다."));
  }
  return translation;
}

std::vector<pid_t> ApertiumTranslator::processes() const {
  return pipeline_ ? pipeline_->processIds() : std::vector<pid_t>();
}

}  // namespace velun
