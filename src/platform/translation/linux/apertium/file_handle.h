// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <unistd.h>
#include <utility>

namespace velun {

/// Owns a file descriptor and closes it.
class FileHandle {
 public:
  FileHandle() = default;
  explicit FileHandle(int descriptor) : descriptor_(descriptor) {}
  ~FileHandle() { reset(); }
  FileHandle(FileHandle&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  FileHandle& operator=(FileHandle&& other) noexcept {
    if (this != &other) {
      reset();
      descriptor_ = std::exchange(other.descriptor_, -1);
    }
    return *this;
  }

  int get() const { return descriptor_; }

  void reset() {
    if (descriptor_ >= 0) ::close(std::exchange(descriptor_, -1));
  }

 private:
  int descriptor_ = -1;
};

}  // namespace velun
