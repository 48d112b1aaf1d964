// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/process_pipeline.h"
#include "platform/speech/helper/recognizer_message.h"

#include <atomic>
#include <chrono>
#include <deque>
#include <memory>
#include <optional>
#include <QLoggingCategory>
#include <QString>
#include <stdexcept>

namespace velun {

/// "velun.recognizer": starts and ends of helpers, for developers; silent by default.
Q_DECLARE_LOGGING_CATEGORY(helperLog)

/// A file of the helper that is not as it was installed.
struct FileFault {
  QString name;
  int code = 0;  ///< the errno value if it cannot be read; 0 if it is missing or damaged

  /// The name and, for a file that cannot be read, the reason, in the language of the system.
  QString description() const;
};

/// The helper has ended or does not answer. `what()` is its last failure message, in English; may
/// be empty.
class HelperEnded final : public std::runtime_error {
 public:
  explicit HelperEnded(const std::string& reason, std::optional<FileFault> fileFault = {})
      : std::runtime_error(reason), fileFault_(std::move(fileFault)) {}

  /// The file that was the reason, if any.
  const std::optional<FileFault>& fileFault() const { return fileFault_; }

 private:
  std::optional<FileFault> fileFault_;
};

/// A connection to a running helper program, and the messages to and from it. The program ends with
/// the last connection, and also when Velun crashes. Blocking, for one worker thread.
class HelperProcess {
 public:
  /// What the connections to one process have in common.
  class Program;

  static constexpr std::chrono::seconds kDefaultTimeout{20};
  /// Loading a large model from a slow disk takes longer.
  static constexpr std::chrono::seconds kLoadTimeout{60};

  /// Starts `program`; what it writes to its standard error is discarded, because the libraries
  /// print errors of their own. `timeout` is for everything but loading. Throws `HelperEnded`.
  explicit HelperProcess(const QString& program,
                         std::chrono::milliseconds timeout = kDefaultTimeout);

  /// Another connection to a process; null if it has ended or a connection to it has failed. Any
  /// thread, one at a time.
  static std::unique_ptr<HelperProcess> join(std::shared_ptr<Program> program,
                                             std::chrono::milliseconds timeout);
  const std::shared_ptr<Program>& program() const { return program_; }

  /// Sends a message, waiting while the helper is busy. Throws `HelperEnded`.
  void send(RecognizerMessage::Kind kind, const QByteArray& body = {});

  /// The next message that has arrived, without waiting. Throws `HelperEnded` when the helper has
  /// ended and every message has been taken.
  std::optional<RecognizerMessage> tryReceive();

  /// Waits, no longer than `atMost`, until a message has arrived. Throws `HelperEnded`, also when
  /// the calls without a message have waited for the timeout.
  void awaitMessage(std::chrono::milliseconds atMost);

  /// Waits for the next message. Throws `HelperEnded`, also after the timeout.
  RecognizerMessage receive() { return receive(timeout_); }
  RecognizerMessage receive(std::chrono::milliseconds timeout);

  /// Makes a waiting operation throw soon, and every later one. Any thread.
  void interrupt() {
    isInterrupted_ = true;
    channel_.interrupt();
  }

  pid_t processId() const;

 private:
  /// Writes from `input` and queues the messages that have arrived. False after `timeout`.
  bool exchange(std::span<const char>& input, std::chrono::milliseconds timeout);
  void queueMessages(const QByteArray& bytes);
  [[noreturn]] void throwEnded() const;

  HelperProcess(std::shared_ptr<Program> program, ByteChannel channel,
                std::chrono::milliseconds timeout);

  const std::chrono::milliseconds timeout_;
  const std::shared_ptr<Program> program_;
  const ByteChannel channel_;
  std::atomic<bool> isInterrupted_ = false;
  bool hasEnded_ = false;
  std::chrono::milliseconds silence_{0};  ///< waited by `awaitMessage` since the last message
  RecognizerMessageReader reader_;
  std::deque<RecognizerMessage> messages_;
  QString lastFailure_;
  std::optional<FileFault> fileFault_;
};

}  // namespace velun
