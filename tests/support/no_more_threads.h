// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <pthread.h>
#include <QtGlobal>

namespace velun::test {

/// While it exists no thread can be started: there is no memory for a stack.
class NoMoreThreads {
 public:
  NoMoreThreads() {
    pthread_getattr_default_np(&usual_);
    pthread_attr_t large;
    pthread_getattr_default_np(&large);
    pthread_attr_setstacksize(&large, std::size_t{1} << 47);
    pthread_setattr_default_np(&large);
    pthread_attr_destroy(&large);
  }
  ~NoMoreThreads() {
    pthread_setattr_default_np(&usual_);
    pthread_attr_destroy(&usual_);
  }
  Q_DISABLE_COPY_MOVE(NoMoreThreads)

 private:
  pthread_attr_t usual_;
};

}  // namespace velun::test
