// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/one_shot.h"

#include <deque>
#include <QUuid>

namespace velun {

/// The ids of lines on their way to one run of the translator: unbounded, in order, with one
/// reader that waits for the next. Main thread.
class LineQueue {
 public:
  void push(const QUuid& id) {
    if (isFinished_) return;
    ids_.push_back(id);
    arrival_.complete(true);
  }

  /// Wakes the reader for the last time; what was not taken is dropped.
  void finish() {
    isFinished_ = true;
    ids_.clear();
    arrival_.complete(true);
  }

  bool isFinished() const { return isFinished_; }
  bool isEmpty() const { return ids_.empty(); }

  QUuid take() {
    const QUuid id = ids_.front();
    ids_.pop_front();
    return id;
  }

  /// Answered when something is pushed from now on, or at the end. Only while it is empty.
  OneShot<bool> nextArrival() {
    arrival_ = {};
    return arrival_;
  }

 private:
  std::deque<QUuid> ids_;
  bool isFinished_ = false;
  OneShot<bool> arrival_;
};

}  // namespace velun
