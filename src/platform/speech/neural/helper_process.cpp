// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/neural/helper_process.h"

#include <atomic>
#include <cstring>
#include <system_error>

namespace velun {

Q_LOGGING_CATEGORY(helperLog, "velun.recognizer", QtCriticalMsg)

QString FileFault::description() const {
  return code == 0 ? name : name + ": " + QString::fromLocal8Bit(std::strerror(code));
}

class HelperProcess::Program {
 public:
  /// Throws `HelperEnded`.
  explicit Program(const QString& path) : pipeline_(start(path)) {}

  /// The first connection, over the standard input and output.
  ByteChannel takeFirst() { return pipeline_.takeChannel(); }
  /// Throws `std::system_error`.
  ByteChannel connect() { return pipeline_.connect(); }

  pid_t processId() const { return pipeline_.processIds().front(); }

  /// Whether a connection has failed: what it shares with others may be damaged. Any thread.
  std::atomic<bool> hasFailed = false;

 private:
  static ProcessPipeline start(const QString& path) {
    const QStringList command{path};
    ProcessOptions options;
    options.discardsErrors = true;
    options.takesConnections = true;
    try {
      return ProcessPipeline({command}, options);
    } catch (const std::system_error& error) {
      throw HelperEnded("it cannot be started: " + error.code().message());
    }
  }

  ProcessPipeline pipeline_;
};

HelperProcess::HelperProcess(std::shared_ptr<Program> program, ByteChannel channel,
                             std::chrono::milliseconds timeout)
    : timeout_(timeout), program_(std::move(program)), channel_(std::move(channel)) {}

HelperProcess::HelperProcess(const QString& program, std::chrono::milliseconds timeout)
    : timeout_(timeout),
      program_(std::make_shared<Program>(program)),
      channel_(program_->takeFirst()) {}

std::unique_ptr<HelperProcess> HelperProcess::join(std::shared_ptr<Program> program,
                                                   std::chrono::milliseconds timeout) {
  if (!program || program->hasFailed) return nullptr;
  try {
    ByteChannel channel = program->connect();
    return std::unique_ptr<HelperProcess>(
        new HelperProcess(std::move(program), std::move(channel), timeout));
  } catch (const std::system_error&) {
    return nullptr;
  }
}

pid_t HelperProcess::processId() const {
  return program_->processId();
}

void HelperProcess::send(RecognizerMessage::Kind kind, const QByteArray& body) {
  const QByteArray bytes = encoded(kind, body);
  std::span<const char> input(bytes);
  while (!input.empty()) {
    if (!exchange(input, timeout_) || hasEnded_) throwEnded();
  }
}

std::optional<RecognizerMessage> HelperProcess::tryReceive() {
  std::span<const char> nothing;
  if (messages_.empty()) exchange(nothing, std::chrono::milliseconds(0));
  if (messages_.empty() && hasEnded_) throwEnded();
  if (messages_.empty()) return std::nullopt;
  RecognizerMessage message = std::move(messages_.front());
  messages_.pop_front();
  return message;
}

void HelperProcess::awaitMessage(std::chrono::milliseconds atMost) {
  std::span<const char> nothing;
  if (!messages_.empty()) return;
  if (!exchange(nothing, atMost)) silence_ += atMost;
  if (silence_ >= timeout_) throwEnded();
}

RecognizerMessage HelperProcess::receive(std::chrono::milliseconds timeout) {
  std::span<const char> nothing;
  while (true) {
    if (std::optional<RecognizerMessage> message = tryReceive()) return *std::move(message);
    if (!exchange(nothing, timeout)) throwEnded();
  }
}

bool HelperProcess::exchange(std::span<const char>& input, std::chrono::milliseconds timeout) {
  if (hasEnded_) return true;
  QByteArray output;
  const ByteChannel::Event event = channel_.exchange(input, output, timeout);
  if (event == ByteChannel::Event::ended) hasEnded_ = true;
  try {
    queueMessages(output);
  } catch (const std::runtime_error&) {
    hasEnded_ = true;  // invalid data: nothing after it can be read
  }
  return event != ByteChannel::Event::timedOut;
}

void HelperProcess::queueMessages(const QByteArray& bytes) {
  reader_.append(bytes);
  while (std::optional<RecognizerMessage> message = reader_.next()) {
    if (message->kind == RecognizerMessage::Kind::failure) {
      lastFailure_ = QString::fromUtf8(message->body);
    } else if (message->kind == RecognizerMessage::Kind::damaged) {
      fileFault_ = FileFault{QString::fromUtf8(message->body)};
    } else if (message->kind == RecognizerMessage::Kind::unreadable) {
      const QString text = QString::fromUtf8(message->body);
      fileFault_ = FileFault{text.section(u' ', 1), text.section(u' ', 0, 0).toInt()};
    } else {
      messages_.push_back(*std::move(message));
      silence_ = std::chrono::milliseconds(0);
    }
  }
}

void HelperProcess::throwEnded() const {
  if (!isInterrupted_) program_->hasFailed = true;
  throw HelperEnded(lastFailure_.toStdString(), fileFault_);
}

}  // namespace velun
