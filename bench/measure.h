// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <malloc.h>
#include <vector>

namespace velun::bench {

/// How long one call takes, in milliseconds of the wall clock.
template <class Action>
double millisecondsOf(Action&& action) {
  const auto start = std::chrono::steady_clock::now();
  action();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
      .count();
}

inline double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

/// The median of `runs` calls, in milliseconds.
template <class Action>
double medianMilliseconds(int runs, Action&& action) {
  std::vector<double> values;
  values.reserve(static_cast<std::size_t>(runs));
  for (int i = 0; i < runs; ++i) values.push_back(millisecondsOf(action));
  return median(values);
}

/// The processor time that the work took; other programs' work does not count.
template <class Action>
double processorSecondsOf(Action&& action) {
  const std::clock_t begin = std::clock();
  action();
  return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
}

/// Bytes in use on the heap.
inline double heapBytes() {
  malloc_trim(0);
  const struct mallinfo2 info = mallinfo2();
  return static_cast<double>(info.uordblks) + static_cast<double>(info.hblkhd);
}

/// One row of the result.
inline void report(const char* name, double value, const char* unit) {
  std::printf("%s %.4g %s\n", name, value, unit);
}

}  // namespace velun::bench
