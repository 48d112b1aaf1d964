// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/engine_chain.h"

#include "platform/foundation/failure.h"
#include "platform/foundation/main_task.h"
#include "platform/foundation/one_shot.h"

#include <utility>

namespace velun {

struct EngineChain::Link {
  explicit Link(Operation what) : operation(std::move(what)) {}
  Operation operation;
  std::stop_source stop;
  OneShot<bool> ended;
};

EngineChain::EngineChain() = default;

EngineChain::~EngineChain() {
  close();
}

OneShot<bool> EngineChain::enqueue(Operation operation) {
  const auto link = std::make_shared<Link>(std::move(operation));
  if (isClosed_) {
    link->ended.complete(true);
    return link->ended;
  }
  links_.push_back(link);
  if (!std::exchange(isDraining_, true)) {
    startTask(this, [this] { return drain(this); });
  }
  return link->ended;
}

void EngineChain::cancelAll() {
  // A copy: a stop callback may enqueue.
  const std::deque<std::shared_ptr<Link>> links = links_;
  for (const std::shared_ptr<Link>& link : links) link->stop.request_stop();
}

void EngineChain::close() {
  isClosed_ = true;
  const std::deque<std::shared_ptr<Link>> links = std::exchange(links_, {});
  for (const std::shared_ptr<Link>& link : links) {
    link->ended.complete(true);
    link->stop.request_stop();
  }
}

QCoro::Task<> EngineChain::drain(QPointer<EngineChain> self) {
  while (!self->links_.empty()) {
    const std::shared_ptr<Link> link = self->links_.front();
    try {
      QCoro::Task<> task = link->operation(link->stop.get_token());
      co_await task;
    } catch (const std::exception& error) {
      const QString description = descriptionOf(error);
      qWarning("An engine operation ended with an unexpected error: %s",
               qUtf8Printable(description));
    }
    if (!self || self->isClosed_) co_return;
    self->links_.pop_front();
    link->ended.complete(true);
    if (self->links_.empty()) Q_EMIT self->becameIdle();
    if (!self) co_return;
  }
  self->isDraining_ = false;
}

}  // namespace velun
