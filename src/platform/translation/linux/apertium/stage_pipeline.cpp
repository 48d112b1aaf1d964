// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/linux/apertium/stage_pipeline.h"

#include <system_error>

namespace velun {

StagePipeline::StagePipeline(const std::vector<QStringList>& stages) {
  // Apertium reads and writes UTF-8 only in a UTF-8 locale, whatever the user's is.
  const ProcessOptions options{.environment = {"LC_ALL=C.UTF-8"}, .discardsErrors = true};
  try {
    pipeline_ = std::make_unique<ProcessPipeline>(stages, options);
  } catch (const std::system_error&) {
    // The first request reports it.
  }
}

StagePipeline::Answer StagePipeline::ask(const QByteArray& request,
                                         std::chrono::milliseconds timeout,
                                         const std::stop_token& stop) {
  using Event = ProcessPipeline::Event;
  using Clock = std::chrono::steady_clock;
  if (!pipeline_) return {};
  const std::stop_callback wake(stop, [this] { pipeline_->interrupt(); });
  const auto deadline = Clock::now() + timeout;
  std::span<const char> input(request);
  QByteArray answer;
  while (true) {
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
    if (left.count() <= 0) return {Outcome::timedOut, {}};
    const Event event = pipeline_->exchange(input, answer, left);
    if (stop.stop_requested()) return {Outcome::stopped, {}};
    const qsizetype end = answer.indexOf('\0');
    if (end >= 0) {
      // There must be exactly one response, after the whole request was written.
      if (end != answer.size() - 1 || !input.empty()) return {};
      answer.chop(1);
      return {Outcome::answered, answer};
    }
    if (event == Event::ended) return {};
  }
}

std::vector<pid_t> StagePipeline::processIds() const {
  return pipeline_ ? pipeline_->processIds() : std::vector<pid_t>();
}

}  // namespace velun
