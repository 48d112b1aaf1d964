// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/engine_chain.h"

#include "platform/foundation/failure.h"
#include "platform/foundation/main_task.h"
#include "platform/foundation/one_shot.h"

#include <deque>
#include <utility>

namespace velun {

struct EngineChain::State {
  struct Link {
    explicit Link(Operation what) : operation(std::move(what)) {}
    Operation operation;
    std::stop_source stop;
    OneShot<bool> ended;
  };

  /// Null once the chain is gone.
  EngineChain* chain = nullptr;
  /// The first one is under way while `isDraining`.
  std::deque<std::shared_ptr<Link>> links;
  bool isDraining = false;
};

EngineChain::EngineChain() : state_(std::make_shared<State>()) {
  state_->chain = this;
}

EngineChain::~EngineChain() {
  close();
}

void EngineChain::close() {
  state_->chain = nullptr;
  const std::deque<std::shared_ptr<State::Link>> links = std::exchange(state_->links, {});
  for (const std::shared_ptr<State::Link>& link : links) {
    link->ended.complete(true);
    link->stop.request_stop();
  }
}

OneShot<bool> EngineChain::enqueue(Operation operation) {
  const auto link = std::make_shared<State::Link>(std::move(operation));
  if (!state_->chain) {
    link->ended.complete(true);
    return link->ended;
  }
  state_->links.push_back(link);
  if (!std::exchange(state_->isDraining, true)) {
    startTask(&context_, [state = state_] { return drain(state); });
  }
  return link->ended;
}

void EngineChain::cancelAll() {
  // A copy: whoever hears of the request may queue more.
  const std::deque<std::shared_ptr<State::Link>> links = state_->links;
  for (const std::shared_ptr<State::Link>& link : links) link->stop.request_stop();
}

QCoro::Task<> EngineChain::drain(std::shared_ptr<State> state) {
  while (!state->links.empty()) {
    const std::shared_ptr<State::Link> link = state->links.front();
    try {
      QCoro::Task<> task = link->operation(link->stop.get_token());
      co_await task;
    } catch (const std::exception& error) {
      const QString description = descriptionOf(error);
      qWarning("An engine operation ended with an unexpected error: %s",
               qUtf8Printable(description));
    }
    if (!state->chain) co_return;
    state->links.pop_front();
    link->ended.complete(true);
    if (state->links.empty() && state->chain->onIdle) state->chain->onIdle();
  }
  state->isDraining = false;
}

}  // namespace velun
