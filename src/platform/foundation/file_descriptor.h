// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>
#include <unistd.h>
#include <utility>

namespace velun {

/// Owns an open file descriptor; closes it when destroyed. Negative if opening failed.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int number) : number_(number) {}
  FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  Q_DISABLE_COPY(FileDescriptor)
  ~FileDescriptor() { close(); }

  int number() const { return number_; }
  bool isOpen() const { return number_ >= 0; }

  /// False, with errno set, if the system reports a delayed write error.
  bool close() {
    const int number = std::exchange(number_, -1);
    return number < 0 || ::close(number) == 0;
  }

 private:
  int number_ = -1;
};

}  // namespace velun
