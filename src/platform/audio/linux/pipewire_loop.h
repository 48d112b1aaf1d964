// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <memory>
#include <QObject>

struct pw_context;
struct pw_thread_loop;

namespace velun {

/// A PipeWire event loop on its own thread, with the context for connections. Its PipeWire objects
/// may be used only on that thread or under a `Lock`.
class PipeWireLoop final : public QObject {
  Q_OBJECT

 public:
  /// Keeps the loop's thread out of callbacks. Not for use on the loop's thread.
  class Lock {
   public:
    explicit Lock(PipeWireLoop& loop);
    ~Lock();
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

   private:
    pw_thread_loop* loop_;
  };

  /// Starts the thread under the name `threadName` (up to 15 characters). Returns null and sets
  /// `error` to a negative errno when the system is out of threads or descriptors, or -ENOENT when
  /// PipeWire's configuration is missing.
  static std::unique_ptr<PipeWireLoop> start(const char* threadName, int* error);
  /// Ends the thread; the lock must not be held.
  ~PipeWireLoop() override;

  pw_context* context() const { return context_; }

  /// Posts a `changed` signal to the main thread; calls before its delivery are combined. Any
  /// thread.
  void notify();

 Q_SIGNALS:
  /// The loop may be destroyed in response.
  void changed();

 private:
  explicit PipeWireLoop(pw_thread_loop* loop);

  pw_thread_loop* loop_;
  pw_context* context_ = nullptr;
  std::atomic<bool> isNotifying_ = false;
};

}  // namespace velun
