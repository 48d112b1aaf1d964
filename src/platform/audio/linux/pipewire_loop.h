// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <functional>
#include <memory>

struct pw_context;
struct pw_thread_loop;

namespace velun {

/// A PipeWire event loop on a thread of its own, with the context that connections are made in.
/// Every PipeWire object that belongs to it is touched only on that thread or under a `Lock`.
class PipeWireLoop {
 public:
  /// Holds the loop's thread still. Not for use on the loop's thread.
  class Lock {
   public:
    explicit Lock(PipeWireLoop& loop);
    ~Lock();
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

   private:
    pw_thread_loop* loop_;
  };

  /// Starts the thread under the name `threadName` (up to 15 characters). None, with a negative
  /// errno in `error`, when the system has no more threads or descriptors.
  static std::unique_ptr<PipeWireLoop> start(const char* threadName, int* error);
  /// Ends the thread; the lock must not be held.
  ~PipeWireLoop();
  PipeWireLoop(const PipeWireLoop&) = delete;
  PipeWireLoop& operator=(const PipeWireLoop&) = delete;

  /// Null where the library's settings are missing.
  pw_context* context() const { return context_; }

  /// Lets the loop run until `condition` holds, which is asked for now and after every `wake`.
  /// Returns whether it came to hold in time. Under the lock.
  bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit);

  /// Makes `waitUntil` ask again. On the loop's thread.
  void wake();

 private:
  explicit PipeWireLoop(pw_thread_loop* loop);

  pw_thread_loop* loop_;
  pw_context* context_;
};

}  // namespace velun
