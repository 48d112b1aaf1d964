// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/library/history_view_model.h"

#include <optional>
#include <QDate>
#include <vector>

namespace velun {

enum class SessionOrder { newestFirst, oldestFirst, title, longestFirst };

/// The days on which a session may have begun; the periods include today.
enum class SessionPeriod { any, today, last7Days, last30Days, thisYear };

/// In which order saved sessions are listed, and which of them. Not kept for the next run, in which
/// sessions that are left out would look lost.
struct SessionArrangement {
  SessionOrder order = SessionOrder::newestFirst;
  SessionPeriod period = SessionPeriod::any;
  /// The locale identifier of a line; absent: all languages.
  std::optional<QString> language = {};
  /// Where a line was heard; absent: everywhere.
  std::optional<AudioInput> input = {};

  bool operator==(const SessionArrangement&) const = default;

  /// Whether sessions may be left out.
  bool isFilter() const { return period != SessionPeriod::any || language || input; }
  /// Whether sessions of one day stand together.
  bool isByDate() const {
    return order == SessionOrder::newestFirst || order == SessionOrder::oldestFirst;
  }
};

/// The sessions of a listing, which are newest first, in another arrangement. A session belongs to
/// a language or an input if one of its lines does.
SavedSessions arranged(const SavedSessions& sessions, const SessionArrangement& arrangement,
                       const QDate& today);

/// The locale identifiers of all lines, in ascending order, without repeats.
std::vector<QString> spokenLanguages(const SavedSessions& sessions);

}  // namespace velun
