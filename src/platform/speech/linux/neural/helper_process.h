// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/file_descriptor.h"
#include "platform/speech/linux/helper/recognizer_message.h"

#include <chrono>
#include <deque>
#include <QLoggingCategory>
#include <QString>
#include <stdexcept>
#include <sys/types.h>

namespace velun {

/// "velun.recognizer": what becomes of helpers, for developers; silent by default.
Q_DECLARE_LOGGING_CATEGORY(helperLog)

/// The helper ended, or gives no answer. `what()` is its own last word, in English; may be empty.
class HelperEnded final : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// One running helper program and the connection to it. It ends with the object, and with the
/// thread that made it, should the program crash. For one worker thread; operations block.
class HelperProcess {
 public:
  /// How long an answer may take.
  static constexpr std::chrono::seconds kPatience{20};
  /// How long loading may take: a large model from a slow disk.
  static constexpr std::chrono::seconds kLoadPatience{60};

  /// Starts `program`. Throws `HelperEnded`.
  explicit HelperProcess(const QString& program);
  ~HelperProcess();
  HelperProcess(const HelperProcess&) = delete;
  HelperProcess& operator=(const HelperProcess&) = delete;

  /// Sends a message, waiting while the helper is behind. Throws `HelperEnded`.
  void send(RecognizerMessage::Kind kind, const QByteArray& body = {});

  /// The next message that has arrived, without waiting. Throws `HelperEnded` once everything it
  /// sent was taken.
  std::optional<RecognizerMessage> tryReceive();

  /// The next message, waiting for it. Throws `HelperEnded`, also when the helper takes too long.
  RecognizerMessage receive(std::chrono::milliseconds patience = kPatience);

  /// Breaks the connection: an operation that waits throws soon. Any thread.
  void interrupt();

  pid_t processId() const { return process_; }

 private:
  /// Waits for `events` and takes what has arrived. False when the time is up.
  bool exchange(short events, std::chrono::milliseconds atMost, bool& canSend);
  void readArrived();
  void sortArrived();
  [[noreturn]] void end() const;

  FileDescriptor socket_;
  pid_t process_ = -1;
  bool hasEnded_ = false;
  RecognizerMessageReader reader_;
  std::deque<RecognizerMessage> arrived_;
  QString lastWord_;
};

}  // namespace velun
