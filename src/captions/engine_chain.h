// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <QCoroTask>
#include <QObject>
#include <stop_token>

namespace velun {

template <class Answer>
class OneShot;

/// Engine operations one behind the other: each begins when the one before it has ended, the first
/// on the next turn of the event loop (an operation queued from inside the engine would otherwise
/// wait for its own caller). Main thread.
class EngineChain {
 public:
  /// An ordinary function that calls a coroutine; the coroutine must not fail. Cancellation only
  /// reaches the operation as its stop token: it is begun all the same.
  using Operation = std::function<QCoro::Task<>(std::stop_token)>;

  EngineChain();
  /// Closes it.
  ~EngineChain();

  /// Called whenever the last operation has ended and none is left.
  std::function<void()> onIdle;

  /// Queues an operation. The result is answered when it has ended.
  OneShot<bool> enqueue(Operation operation);

  /// Requests a stop of every operation queued or under way.
  void cancelAll();

  /// Asks what is under way to stop, drops what is queued and answers everyone who waits. What is
  /// queued afterwards is answered at once, and never begun.
  void close();

 private:
  struct State;

  static QCoro::Task<> drain(std::shared_ptr<State> state);

  std::shared_ptr<State> state_;
  QObject context_;
};

}  // namespace velun
