// SPDX-License-Identifier: GPL-3.0-or-later
// Two threads write one number. The thread sanitizer must report this; otherwise it does not work
// and passing tests mean nothing.
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
