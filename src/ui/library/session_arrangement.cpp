// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/session_arrangement.h"

#include "language/localization.h"
#include "ui/library/session_sections.h"

#include <algorithm>
#include <QCollator>
#include <set>

namespace velun {

namespace {

using Entry = std::shared_ptr<const ListedSession>;

bool isIn(const SessionPeriod period, Instant startedAt, const QDate& today) {
  if (period == SessionPeriod::any) return true;
  const QDate day = localDay(startedAt);
  switch (period) {
    case SessionPeriod::any:
      return true;
    case SessionPeriod::today:
      return day >= today;
    case SessionPeriod::last7Days:
      return day > today.addDays(-7);
    case SessionPeriod::last30Days:
      return day > today.addDays(-30);
    case SessionPeriod::thisYear:
      return day.year() >= today.year();
  }
  return true;
}

bool holds(const SessionSummary& session, const SessionArrangement& arrangement) {
  const auto& language = arrangement.language;
  if (language && std::ranges::find(session.languages, *language) == session.languages.end()) {
    return false;
  }
  return !arrangement.input || session.inputs.contains(*arrangement.input);
}

Instant::duration lengthOf(const Entry& entry) {
  const SessionSummary& session = entry->summary;
  return session.endedAt.value_or(session.startedAt) - session.startedAt;
}

void sortByTitle(SavedSessions& sessions) {
  QCollator collator{QLocale(Localization::shared().locale())};
  collator.setCaseSensitivity(Qt::CaseInsensitive);
  collator.setNumericMode(true);
  std::ranges::stable_sort(sessions, [&collator](const Entry& left, const Entry& right) {
    return collator.compare(left->summary.title, right->summary.title) < 0;
  });
}

}  // namespace

SavedSessions arranged(const SavedSessions& sessions, const SessionArrangement& arrangement,
                       const QDate& today) {
  SavedSessions result;
  std::ranges::copy_if(sessions, std::back_inserter(result), [&](const Entry& entry) {
    return isIn(arrangement.period, entry->summary.startedAt, today) &&
           holds(entry->summary, arrangement);
  });
  switch (arrangement.order) {
    case SessionOrder::newestFirst:
      break;
    case SessionOrder::oldestFirst:
      std::ranges::reverse(result);
      break;
    case SessionOrder::title:
      sortByTitle(result);
      break;
    case SessionOrder::longestFirst:
      std::ranges::stable_sort(result, std::greater(), lengthOf);
      break;
  }
  return result;
}

std::vector<QString> spokenLanguages(const SavedSessions& sessions) {
  std::set<QString> languages;
  for (const Entry& entry : sessions) {
    languages.insert(entry->summary.languages.begin(), entry->summary.languages.end());
  }
  return {languages.begin(), languages.end()};
}

}  // namespace velun
