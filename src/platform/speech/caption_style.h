// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <QString>

namespace velun {

/// How recognized text is written. Set on the main thread, read by the decode threads, so that a
/// change applies from the next result on.
struct CaptionStyle {
  std::atomic<bool> numbersAsDigits = true;
  /// Whether runs that start from now on tell speakers apart. Main thread.
  bool labelsSpeakers = false;
  /// The user's names and terms, one a line. Main thread: a recognizer gets them when it is made.
  QString userWords;
};

}  // namespace velun
