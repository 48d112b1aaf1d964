// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>

namespace velun {

/// How recognized text is written. Set on the main thread, read by the decode threads, so that a
/// change applies from the next result on.
struct CaptionStyle {
  std::atomic<bool> numbersAsDigits = true;
};

}  // namespace velun
