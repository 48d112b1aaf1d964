// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <exception>
#include <memory>
#include <QCoreApplication>
#include <QCoroTask>  // for <coroutine>, which moc 6.4 cannot parse as one of the first includes
#include <QMetaObject>
#include <utility>
#include <variant>

namespace velun {

/// A result that one coroutine on the main thread awaits and that a callback, a slot or a worker
/// thread provides. Copies share the result. Only the first call of `complete` or `fail` counts.
/// The coroutine resumes from the event loop, not inside that call.
///
/// Replaces awaiting a signal, which may be emitted twice while it is awaited.
template <class T>
class OneShot {
 public:
  /// Provides the result. False if there was one before. Any thread.
  bool complete(T value) const { return answer<State::kValue>(std::move(value)); }

  /// Makes the waiting coroutine throw. False if there was a result before. Any thread.
  bool fail(std::exception_ptr error) const { return answer<State::kError>(std::move(error)); }

  /// Whether there is a result or an error. Any thread.
  bool isAnswered() const { return state_->answered; }

  auto operator co_await() const { return Awaiter{state_}; }

 private:
  struct State {
    static constexpr std::size_t kValue = 1;
    static constexpr std::size_t kError = 2;
    std::atomic<bool> answered = false;
    std::variant<std::monostate, T, std::exception_ptr> result;  // main thread
    std::coroutine_handle<> waiting;                             // main thread
  };

  template <std::size_t Index, class V>
  bool answer(V value) const {
    if (state_->answered.exchange(true)) return false;
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [state = state_, value = std::move(value)]() mutable {
          state->result.template emplace<Index>(std::move(value));
          if (const auto waiting = std::exchange(state->waiting, {})) waiting.resume();
        },
        Qt::QueuedConnection);
    return true;
  }

  struct Awaiter {
    std::shared_ptr<State> state;
    bool await_ready() const { return state->result.index() != 0; }
    void await_suspend(std::coroutine_handle<> handle) { state->waiting = handle; }
    T await_resume() {
      if (state->result.index() == State::kError) {
        std::rethrow_exception(std::get<State::kError>(state->result));
      }
      return std::get<State::kValue>(state->result);
    }
  };

  std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace velun
