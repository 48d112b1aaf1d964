// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace velun::test {

/// Runs `work` in a child process in which every call of the system call `number` (`SYS_read` …)
/// fails with the errno value `code`, as on a failing disk. Of SYS_write only calls with 17 bytes
/// or more: the sanitizers write up to 16 to pipes of their own. Returns false if that is
/// impossible here or the child ended early.
inline bool runWithFailingCall(int number, int code, const std::function<void()>& work) {
  const pid_t child = ::fork();
  if (child == 0) {
    const auto error = SECCOMP_RET_ERRNO | (static_cast<unsigned>(code) & SECCOMP_RET_DATA);
    const unsigned least = number == SYS_write ? 17 : 0;
    sock_filter rules[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned>(number), 0, 3),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args[2])),
        BPF_JUMP(BPF_JMP | BPF_JGE | BPF_K, least, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, error),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog program{sizeof(rules) / sizeof(rules[0]), rules};
    if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
        ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) {
      ::_exit(1);
    }
    work();
    ::_exit(0);
  }
  int status = 0;
  return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// While it exists, the process cannot open any more files.
class NoMoreDescriptors {
 public:
  NoMoreDescriptors() {
    ::getrlimit(RLIMIT_NOFILE, &before_);
    const int next = ::dup(0);
    ::close(next);
    const rlimit none{static_cast<rlim_t>(next), before_.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &none);
  }
  NoMoreDescriptors(const NoMoreDescriptors&) = delete;
  NoMoreDescriptors& operator=(const NoMoreDescriptors&) = delete;
  ~NoMoreDescriptors() { ::setrlimit(RLIMIT_NOFILE, &before_); }

 private:
  rlimit before_{};
};

}  // namespace velun::test
