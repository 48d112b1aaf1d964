// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <QCoroTask>
#include <QObject>
#include <QPointer>
#include <stop_token>

namespace velun {

template <class Answer>
class OneShot;

/// Runs engine operations one after another, never two at a time. The first one starts on the next
/// turn of the event loop, because an operation that the engine itself requests would otherwise
/// wait for its own caller. Main thread.
class EngineChain final : public QObject {
  Q_OBJECT

 public:
  /// An ordinary function that calls a coroutine; the coroutine must not throw. It starts also when
  /// its stop token was already triggered.
  using Operation = std::function<QCoro::Task<>(std::stop_token)>;

  EngineChain();
  /// Closes the chain.
  ~EngineChain() override;

  /// Queues an operation. The result completes when the operation has ended.
  OneShot<bool> enqueue(Operation operation);

  /// Requests a stop of every operation that is queued or running.
  void cancelAll();

  /// Requests a stop of the running operation, drops the queued ones and completes the results of
  /// all. Operations queued later complete at once and never start.
  void close();

 Q_SIGNALS:
  /// The last operation has ended and none is queued.
  void becameIdle();

 private:
  struct Link;

  static QCoro::Task<> drain(QPointer<EngineChain> self);

  /// While `isDraining_`, the first one is running.
  std::deque<std::shared_ptr<Link>> links_;
  bool isDraining_ = false;
  bool isClosed_ = false;
};

}  // namespace velun
