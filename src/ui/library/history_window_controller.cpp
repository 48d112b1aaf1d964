// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/history_window_controller.h"

#include "language/localization.h"
#include "ui/common/window_presentation.h"
#include "ui/library/history_view.h"

#include <QScreen>

namespace velun {

namespace {

constexpr QSize kContentSize(960, 620);
constexpr QSize kMinSize(760, 430);

}  // namespace

HistoryWindowController::HistoryWindowController(HistoryViewModel& model, AppSettings& settings,
                                                 HistoryActions actions, Clock& clock)
    : model_(model) {
  auto view = std::make_unique<HistoryView>(model, settings, std::move(actions), clock);
  view_ = view.get();
  window_ = WindowPresentation::makeWindow(title(), kContentSize, std::move(view), true);
  window_->setObjectName("SessionHistory");
  // Large fonts need more room.
  window_->setMinimumSize(kMinSize.expandedTo(window_->minimumSizeHint())
                              .boundedTo(window_->screen()->availableSize()));
}

HistoryWindowController::~HistoryWindowController() = default;

void HistoryWindowController::show() {
  model_.reload();
  WindowPresentation::present(*window_);
}

void HistoryWindowController::updateTitle() {
  window_->setWindowTitle(title());
}

QString HistoryWindowController::title() {
  return L("Velun — Saved Sessions", "Velun — 저장 기록");
}

bool HistoryWindowController::isKeyWindow() const {
  return window_->isVisible() && window_->isActiveWindow();
}

}  // namespace velun
