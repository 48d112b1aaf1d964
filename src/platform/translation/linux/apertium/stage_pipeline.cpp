// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/linux/apertium/stage_pipeline.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <optional>
#include <poll.h>
#include <QFile>
#include <spawn.h>
#include <string>
#include <sys/socket.h>
#include <sys/wait.h>

namespace velun {

namespace {

// How often a waiting request looks whether it was called off.
constexpr std::chrono::milliseconds kLookForStop{100};

struct Link {
  FileDescriptor from;
  FileDescriptor to;
};

Link makePipe() {
  std::array<int, 2> ends{-1, -1};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return {};
  return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

// The first link is a socket, because writing to it when the reader is gone can be told not to
// raise a signal.
Link makeSocket() {
  std::array<int, 2> ends{-1, -1};
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) return {};
  return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

// The environment with texts in UTF-8, whatever the user's locale is.
std::vector<std::string> childEnvironment() {
  std::vector<std::string> variables{"LC_ALL=C.UTF-8"};
  for (char** variable = environ; *variable; ++variable) {
    const std::string text = *variable;
    if (!text.starts_with("LC_ALL=")) variables.push_back(text);
  }
  return variables;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

std::optional<pid_t> spawn(const QStringList& stage, int input, int output) {
  std::vector<std::string> words;
  for (const QString& word : stage) words.push_back(QFile::encodeName(word).toStdString());
  std::vector<std::string> variables = childEnvironment();

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  sigset_t none;
  sigset_t pipe;
  sigemptyset(&none);
  sigemptyset(&pipe);
  sigaddset(&pipe, SIGPIPE);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setsigdefault(&attributes, &pipe);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);

  pid_t process = 0;
  const int error = ::posix_spawnp(&process, words.front().c_str(), &actions, &attributes,
                                   pointersTo(words).data(), pointersTo(variables).data());
  posix_spawn_file_actions_destroy(&actions);
  posix_spawnattr_destroy(&attributes);
  return error == 0 ? std::optional(process) : std::nullopt;
}

}  // namespace

StagePipeline::StagePipeline(const std::vector<QStringList>& stages) {
  Link first = makeSocket();
  input_ = std::move(first.to);
  FileDescriptor next = std::move(first.from);
  for (const QStringList& stage : stages) {
    Link link = makePipe();
    if (const auto process = spawn(stage, next.number(), link.to.number())) {
      processes_.push_back(*process);
    }
    next = std::move(link.from);
  }
  runs_ = !stages.empty() && processes_.size() == stages.size();
  output_ = std::move(next);
  ::fcntl(output_.number(), F_SETFL, O_NONBLOCK);
}

StagePipeline::~StagePipeline() {
  input_.close();
  output_.close();
  for (const pid_t process : processes_) {
    ::kill(process, SIGKILL);
    while (::waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
    }
  }
}

bool StagePipeline::isHealthy() {
  for (const pid_t process : processes_) {
    // Leaves the ended process to the destructor, so that its id cannot be given to another.
    siginfo_t info{};
    if (::waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | WNOHANG | WNOWAIT) != 0 ||
        info.si_pid != 0) {
      return false;
    }
  }
  pollfd output{output_.number(), POLLIN, 0};
  return runs_ && ::poll(&output, 1, 0) == 0;
}

StagePipeline::Answer StagePipeline::ask(const QByteArray& request,
                                         std::chrono::milliseconds patience,
                                         const std::stop_token& stop) {
  if (!runs_) return {};
  using Clock = std::chrono::steady_clock;
  const auto deadline = Clock::now() + patience;
  qsizetype written = 0;
  QByteArray answer;
  while (true) {
    if (stop.stop_requested()) return {Outcome::stopped, {}};
    if (Clock::now() >= deadline) return {Outcome::timedOut, {}};
    // Reading while writing: a long text fills the pipes in both directions.
    const auto events = static_cast<short>(written < request.size() ? POLLOUT : 0);
    std::array<pollfd, 2> handles{{{input_.number(), events, 0}, {output_.number(), POLLIN, 0}}};
    const int ready =
        ::poll(handles.data(), handles.size(), static_cast<int>(kLookForStop.count()));
    if (ready < 0 && errno != EINTR) return {};
    if (ready <= 0) continue;
    if (handles[0].revents != 0 && !write(request, written)) return {};
    if (handles[1].revents != 0 && !read(answer)) return {};
    const qsizetype end = answer.indexOf('\0');
    if (end < 0) continue;
    // Exactly one answer, and not before the whole request was taken.
    if (end != answer.size() - 1 || written < request.size()) return {};
    answer.chop(1);
    return {Outcome::answered, answer};
  }
}

bool StagePipeline::write(const QByteArray& request, qsizetype& written) {
  const ssize_t count =
      ::send(input_.number(), request.constData() + written,
             static_cast<std::size_t>(request.size() - written), MSG_NOSIGNAL | MSG_DONTWAIT);
  if (count < 0) return errno == EAGAIN || errno == EINTR;
  written += count;
  return true;
}

bool StagePipeline::read(QByteArray& answer) {
  std::array<char, 4096> block{};
  const ssize_t count = ::read(output_.number(), block.data(), block.size());
  if (count < 0) return errno == EAGAIN || errno == EINTR;
  answer.append(block.data(), count);
  return count > 0;
}

}  // namespace velun
