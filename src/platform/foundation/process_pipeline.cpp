// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/process_pipeline.h"

#include "platform/foundation/passed_descriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <QFile>
#include <spawn.h>
#include <string>
#include <sys/socket.h>
#include <sys/wait.h>
#include <system_error>

namespace velun {

namespace {

/// Small, so that a slow process shows in the caller's queue instead of hiding data here.
constexpr int kSendBufferBytes = 64 * 1024;

[[noreturn]] void fail(int error) {
  throw std::system_error(error, std::generic_category());
}

struct Link {
  FileDescriptor from;
  FileDescriptor to;
};

/// A socket pair and no pipe: MSG_NOSIGNAL avoids SIGPIPE when the reader has ended, and `shutdown`
/// wakes a thread that polls it.
Link makeLink() {
  std::array<int, 2> ends{-1, -1};
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) fail(errno);
  return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

void limitSending(const FileDescriptor& socket) {
  ::setsockopt(socket.number(), SOL_SOCKET, SO_SNDBUF, &kSendBufferBytes, sizeof kSendBufferBytes);
}

std::string nameOf(const std::string& variable) {
  return variable.substr(0, variable.find('=') + 1);
}

std::vector<std::string> childEnvironment(std::vector<std::string> added) {
  std::vector<std::string> variables = std::move(added);
  const std::size_t count = variables.size();
  for (char** inherited = environ; *inherited; ++inherited) {
    const std::string variable = *inherited;
    const auto end = variables.begin() + static_cast<std::ptrdiff_t>(count);
    const bool isReplaced = std::any_of(variables.begin(), end, [&](const std::string& own) {
      return nameOf(own) == nameOf(variable);
    });
    if (!isReplaced) variables.push_back(variable);
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

/// Starts one process with default handling of SIGPIPE and no signal blocked.
pid_t spawn(const QStringList& command, int input, int output, int control,
            const ProcessOptions& options) {
  std::vector<std::string> words;
  for (const QString& word : command) words.push_back(QFile::encodeName(word).toStdString());
  std::vector<std::string> variables = childEnvironment(options.environment);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  if (control >= 0) posix_spawn_file_actions_adddup2(&actions, control, kControlDescriptor);
  if (options.discardsErrors) {
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  }
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

  pid_t process = -1;
  const int error = ::posix_spawnp(&process, words.front().c_str(), &actions, &attributes,
                                   pointersTo(words).data(), pointersTo(variables).data());
  posix_spawn_file_actions_destroy(&actions);
  posix_spawnattr_destroy(&attributes);
  if (error != 0) fail(error);
  return process;
}

}  // namespace

ProcessPipeline::ProcessPipeline(const std::vector<QStringList>& commands,
                                 const ProcessOptions& options) {
  try {
    start(commands, options);
  } catch (const std::system_error&) {
    killAll();
    throw;
  }
}

ProcessPipeline::~ProcessPipeline() {
  killAll();
}

void ProcessPipeline::start(const std::vector<QStringList>& commands,
                            const ProcessOptions& options) {
  if (commands.empty()) fail(EINVAL);
  Link first = makeLink();
  FileDescriptor input = std::move(first.to);
  limitSending(input);
  Link control;
  if (options.takesConnections) control = makeLink();
  control_ = std::move(control.to);
  FileDescriptor next = std::move(first.from);
  for (const QStringList& command : commands) {
    Link link = makeLink();
    processIds_.push_back(
        spawn(command, next.number(), link.to.number(), control.from.number(), options));
    next = std::move(link.from);
  }
  channel_ = ByteChannel(std::move(input), std::move(next));
}

void ProcessPipeline::killAll() {
  for (const pid_t process : processIds_) {
    ::kill(process, SIGKILL);
    while (::waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
    }
  }
}

bool ProcessPipeline::isIdle() const {
  for (const pid_t process : processIds_) {
    // WNOWAIT leaves an ended process to the destructor, so that its id is not given to another.
    siginfo_t info{};
    if (::waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | WNOHANG | WNOWAIT) != 0 ||
        info.si_pid != 0) {
      return false;
    }
  }
  return channel_.isIdle();
}

ByteChannel ProcessPipeline::connect() {
  Link link = makeLink();
  limitSending(link.to);
  if (!passDescriptor(control_, link.from)) fail(errno);
  FileDescriptor other(::fcntl(link.to.number(), F_DUPFD_CLOEXEC, 0));
  if (!other.isOpen()) fail(errno);
  return {std::move(link.to), std::move(other)};
}

}  // namespace velun
