// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/arrangement_menu.h"

#include "language/localization.h"

#include <array>
#include <QActionGroup>
#include <utility>

namespace velun {

ArrangementMenu::ArrangementMenu(const HistoryViewModel& library, QWidget* parent)
    : QMenu(parent), library_(library) {
  // The languages are those of the sessions that are listed then.
  connect(this, &QMenu::aboutToShow, this, &ArrangementMenu::fill);
  translate();
}

void ArrangementMenu::translate() {
  setTitle(L("Sort and Filter", "정렬 및 필터"));
  setAccessibleName(title());
  fill();
}

void ArrangementMenu::showAll() {
  set({.order = arrangement_.order});
}

void ArrangementMenu::set(const SessionArrangement& arrangement) {
  if (std::exchange(arrangement_, arrangement) == arrangement) return;
  Q_EMIT arrangementChanged();
}

void ArrangementMenu::addChoice(QMenu& menu, const QString& text,
                                const SessionArrangement& chosen) {
  QAction* choice = menu.addAction(text, this, [this, chosen] { set(chosen); });
  choice->setCheckable(true);
  choice->setChecked(chosen == arrangement_);
  // One of a menu's choices holds.
  auto* group = menu.findChild<QActionGroup*>(QString(), Qt::FindDirectChildrenOnly);
  if (!group) group = new QActionGroup(&menu);
  group->addAction(choice);
}

void ArrangementMenu::fill() {
  // With the menus of the last time, which are children.
  for (QMenu* menu : findChildren<QMenu*>(Qt::FindDirectChildrenOnly)) delete menu;
  clear();
  fillOrders();
  addSeparator();
  fillPeriods();
  fillLanguages();
  fillInputs();
  addSeparator();
  addAction(L("Show All Sessions", "모든 기록 보기"), this, &ArrangementMenu::showAll)
      ->setEnabled(arrangement_.isFilter());
}

void ArrangementMenu::fillOrders() {
  const std::array orders{
      std::pair(SessionOrder::newestFirst, L("Newest First", "최신순")),
      std::pair(SessionOrder::oldestFirst, L("Oldest First", "오래된 순")),
      std::pair(SessionOrder::title, L("By Title", "제목순")),
      std::pair(SessionOrder::longestFirst, L("Longest First", "긴 순")),
  };
  for (const auto& [order, text] : orders) {
    SessionArrangement chosen = arrangement_;
    chosen.order = order;
    addChoice(*this, text, chosen);
  }
}

void ArrangementMenu::fillPeriods() {
  QMenu* menu = addMenu(L("Date", "날짜"));
  const std::array periods{
      std::pair(SessionPeriod::any, L("Any Date", "모든 날짜")),
      std::pair(SessionPeriod::today, L("Today", "오늘")),
      std::pair(SessionPeriod::last7Days, L("Last 7 Days", "최근 7일")),
      std::pair(SessionPeriod::last30Days, L("Last 30 Days", "최근 30일")),
      std::pair(SessionPeriod::thisYear, L("This Year", "올해")),
  };
  for (const auto& [period, text] : periods) {
    SessionArrangement chosen = arrangement_;
    chosen.period = period;
    addChoice(*menu, text, chosen);
  }
}

void ArrangementMenu::fillLanguages() {
  QMenu* menu = addMenu(L("Language", "언어"));
  SessionArrangement chosen = arrangement_;
  chosen.language.reset();
  addChoice(*menu, L("All Languages", "모든 언어"), chosen);
  std::vector<QString> languages = spokenLanguages(library_.sessions());
  // A chosen language stays on offer when its last session was deleted.
  const auto& kept = arrangement_.language;
  if (kept && std::ranges::find(languages, *kept) == languages.end()) languages.push_back(*kept);
  for (const QString& language : languages) {
    chosen.language = language;
    addChoice(*menu, languageName(language), chosen);
  }
}

void ArrangementMenu::fillInputs() {
  QMenu* menu = addMenu(L("Input", "입력"));
  SessionArrangement chosen = arrangement_;
  chosen.input.reset();
  addChoice(*menu, L("All Inputs", "모든 입력"), chosen);
  for (const AudioInput input : {AudioInput::computer, AudioInput::microphone}) {
    chosen.input = input;
    addChoice(*menu, velun::title(input), chosen);
  }
}

}  // namespace velun
