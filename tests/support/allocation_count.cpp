// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/allocation_count.h"

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

std::size_t velun::test::allocationCount() {
  return 0;
}
bool velun::test::canCountAllocations() {
  return false;
}

#else

// The C library lets a program put its own functions in place of these and still call the
// originals under their second names.
extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier): the C library's own names
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
// NOLINTEND(bugprone-reserved-identifier)
}

namespace {

thread_local std::size_t count = 0;

}  // namespace

extern "C" {

void* malloc(std::size_t size) {
  ++count;
  return __libc_malloc(size);
}
void* calloc(std::size_t items, std::size_t size) {
  ++count;
  return __libc_calloc(items, size);
}
void* realloc(void* memory, std::size_t size) {
  ++count;
  return __libc_realloc(memory, size);
}
void* aligned_alloc(std::size_t alignment, std::size_t size) {
  ++count;
  return __libc_memalign(alignment, size);
}
}

std::size_t velun::test::allocationCount() {
  return count;
}
bool velun::test::canCountAllocations() {
  return true;
}

#endif
