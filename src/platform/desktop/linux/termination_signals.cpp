// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/termination_signals.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <sys/eventfd.h>
#include <unistd.h>

namespace velun {

namespace {

// A signal handler can only use globals.
std::atomic<int> signalDescriptor = -1;

extern "C" void noteSignal(int) {
  const int saved = errno;
  const std::uint64_t one = 1;
  [[maybe_unused]] const auto written = ::write(signalDescriptor, &one, sizeof one);
  errno = saved;
}

int openDescriptor() {
  signalDescriptor = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  return signalDescriptor;
}

void handle(int signal, void (*handler)(int)) {
  struct sigaction action = {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  ::sigaction(signal, &action, nullptr);
}

}  // namespace

TerminationSignals::TerminationSignals() : notifier_(openDescriptor(), QSocketNotifier::Read) {
  connect(&notifier_, &QSocketNotifier::activated, this, &TerminationSignals::drain);
  handle(SIGTERM, noteSignal);
  handle(SIGINT, noteSignal);
}

TerminationSignals::~TerminationSignals() {
  // The program is ending already; another signal must not interrupt its cleanup.
  handle(SIGTERM, SIG_IGN);
  handle(SIGINT, SIG_IGN);
  ::close(signalDescriptor.exchange(-1));
}

void TerminationSignals::drain() {
  std::uint64_t count = 0;
  if (::read(signalDescriptor, &count, sizeof count) != sizeof count) return;
  for (; count > 0; --count) Q_EMIT received();
}

}  // namespace velun
