// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/session_arrangement.h"

#include "language/localization.h"
#include "ui/library/session_sections.h"

#include <algorithm>
#include <QCollator>
#include <set>

namespace velun {

namespace {

using Entry = std::shared_ptr<const SavedSession>;

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

bool holds(const CaptionSession& session, const SessionArrangement& arrangement) {
  const auto hasLine = [&session](auto isWanted) {
    return std::ranges::any_of(session.lines, isWanted);
  };
  const auto isSpoken = [&](const Line& line) {
    return line.sourceLanguage == arrangement.language;
  };
  const auto isHeard = [&](const Line& line) {
    return line.input == arrangement.input;
  };
  return (!arrangement.language || hasLine(isSpoken)) && (!arrangement.input || hasLine(isHeard));
}

Instant::duration lengthOf(const Entry& entry) {
  const CaptionSession& session = entry->session;
  return session.endedAt.value_or(session.startedAt) - session.startedAt;
}

void sortByTitle(SavedSessions& sessions) {
  QCollator collator{QLocale(Localization::shared().locale())};
  collator.setCaseSensitivity(Qt::CaseInsensitive);
  collator.setNumericMode(true);
  std::ranges::stable_sort(sessions, [&collator](const Entry& left, const Entry& right) {
    return collator.compare(left->session.title, right->session.title) < 0;
  });
}

}  // namespace

SavedSessions arranged(const SavedSessions& sessions, const SessionArrangement& arrangement,
                       const QDate& today) {
  SavedSessions result;
  std::ranges::copy_if(sessions, std::back_inserter(result), [&](const Entry& entry) {
    return isIn(arrangement.period, entry->session.startedAt, today) &&
           holds(entry->session, arrangement);
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
  // Lines that follow each other are mostly in one language.
  QString last;
  for (const Entry& entry : sessions) {
    for (const Line& line : entry->session.lines) {
      if (!line.sourceLanguage || *line.sourceLanguage == last) continue;
      last = *line.sourceLanguage;
      languages.insert(last);
    }
  }
  return {languages.begin(), languages.end()};
}

}  // namespace velun
