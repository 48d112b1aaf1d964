// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/caption_arguments.h"
#include "model/caption_session.h"

#include <cstdio>
#include <memory>

namespace velun {

/// Writes finished lines, and drafts if the format has them, as they come. Main thread.
class LinePrinter {
 public:
  virtual ~LinePrinter() = default;

  /// The unfinished line; empty: there is none any more.
  virtual void draft(const QString& /*text*/) {}
  virtual void line(const Line& line) = 0;
  /// Nothing follows.
  virtual void finish() {}
};

/// A printer on `out`, which must outlive it. `start` is when the captions began; a line's times
/// are counted from there. Lines have the names of inputs that `names` has. On a terminal a draft
/// is overwritten by what follows it.
std::unique_ptr<LinePrinter> makeLinePrinter(const CaptionArguments& arguments, std::FILE* out,
                                             Instant start, const CaptionSession& names = {});

}  // namespace velun
