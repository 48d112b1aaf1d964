// SPDX-License-Identifier: GPL-3.0-or-later
// Two threads write one number. The thread sanitizer must say so, or its silence about the rest
// means nothing.
#include <thread>

namespace {

int shared = 0;

void count() {
  for (int i = 0; i < 100'000; ++i) ++shared;
}

}  // namespace

int main() {
  std::thread other(count);
  count();
  other.join();
  return shared < 0 ? 1 : 0;
}
