// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/linux/neural/helper_process.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <poll.h>
#include <QFile>
#include <spawn.h>
#include <string>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace velun {

Q_LOGGING_CATEGORY(helperLog, "velun.recognizer", QtCriticalMsg)

namespace {

/// About a second of sound: what waits beyond that waits where it can be seen.
constexpr int kBufferBytes = 64 * 1024;

[[noreturn]] void failToStart(int error) {
  throw HelperEnded(std::string("it cannot be started: ") + std::strerror(error));
}

/// Starts the program with `connection` as its standard input and output, and no signal blocked.
/// Its process id, or a negative errno.
pid_t spawn(const QString& program, int connection) {
  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;
  sigset_t none;
  sigemptyset(&none);
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, connection, STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, connection, STDOUT_FILENO);
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
  QByteArray path = QFile::encodeName(program);
  QByteArray parent = QByteArray::number(getpid());
  const std::array<char*, 3> arguments = {path.data(), parent.data(), nullptr};
  pid_t process = -1;
  const int error =
      posix_spawn(&process, path.constData(), &actions, &attributes, arguments.data(), environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  return error == 0 ? process : -error;
}

}  // namespace

HelperProcess::HelperProcess(const QString& program) {
  std::array<int, 2> ends = {-1, -1};
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) failToStart(errno);
  socket_ = FileDescriptor(ends[0]);
  const FileDescriptor helpersEnd(ends[1]);
  setsockopt(socket_.number(), SOL_SOCKET, SO_SNDBUF, &kBufferBytes, sizeof kBufferBytes);
  process_ = spawn(program, helpersEnd.number());
  if (process_ < 0) failToStart(static_cast<int>(-process_));
}

HelperProcess::~HelperProcess() {
  socket_.close();
  kill(process_, SIGKILL);
  while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
  }
}

void HelperProcess::send(RecognizerMessage::Kind kind, const QByteArray& body) {
  const QByteArray bytes = packed(kind, body);
  qsizetype sent = 0;
  while (sent < bytes.size()) {
    bool canSend = false;
    // Results are taken meanwhile, else both sides could wait for each other.
    if (!exchange(POLLIN | POLLOUT, kPatience, canSend) || hasEnded_) end();
    if (!canSend) continue;
    const ssize_t count =
        ::send(socket_.number(), bytes.constData() + sent,
               static_cast<std::size_t>(bytes.size() - sent), MSG_NOSIGNAL | MSG_DONTWAIT);
    if (count < 0 && errno != EAGAIN && errno != EINTR) {
      // Its last word may still be on its way here.
      readArrived();
      hasEnded_ = true;
      end();
    }
    if (count > 0) sent += count;
  }
}

std::optional<RecognizerMessage> HelperProcess::tryReceive() {
  bool canSend = false;
  if (arrived_.empty()) exchange(POLLIN, std::chrono::milliseconds(0), canSend);
  if (arrived_.empty() && hasEnded_) end();
  if (arrived_.empty()) return std::nullopt;
  RecognizerMessage message = std::move(arrived_.front());
  arrived_.pop_front();
  return message;
}

RecognizerMessage HelperProcess::receive(std::chrono::milliseconds patience) {
  while (true) {
    if (std::optional<RecognizerMessage> message = tryReceive()) return *std::move(message);
    bool canSend = false;
    if (!exchange(POLLIN, patience, canSend)) end();
  }
}

void HelperProcess::interrupt() {
  shutdown(socket_.number(), SHUT_RDWR);
}

bool HelperProcess::exchange(short events, std::chrono::milliseconds atMost, bool& canSend) {
  if (hasEnded_) return true;
  pollfd waited = {socket_.number(), events, 0};
  const int count = poll(&waited, 1, static_cast<int>(atMost.count()));
  if (count < 0 && errno == EINTR) return true;
  if (count <= 0) return false;
  canSend = (waited.revents & POLLOUT) != 0;
  if (waited.revents & (POLLIN | POLLHUP | POLLERR)) readArrived();
  return true;
}

void HelperProcess::readArrived() {
  std::array<char, 16384> buffer;
  while (true) {
    const ssize_t count = recv(socket_.number(), buffer.data(), buffer.size(), MSG_DONTWAIT);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0 && errno == EAGAIN) return;
    if (count <= 0) {
      hasEnded_ = true;
      return;
    }
    reader_.append(std::span(buffer.data(), static_cast<std::size_t>(count)));
    try {
      sortArrived();
    } catch (const std::runtime_error&) {
      // What it says makes no sense any more.
      hasEnded_ = true;
      return;
    }
  }
}

void HelperProcess::sortArrived() {
  while (std::optional<RecognizerMessage> message = reader_.next()) {
    if (message->kind == RecognizerMessage::Kind::failure) {
      lastWord_ = QString::fromUtf8(message->body);
    } else {
      arrived_.push_back(*std::move(message));
    }
  }
}

void HelperProcess::end() const {
  throw HelperEnded(lastWord_.toStdString());
}

}  // namespace velun
