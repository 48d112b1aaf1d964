// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/history_window_controller.h"

#include "language/localization.h"
#include "ui/common/window_frame.h"
#include "ui/common/window_presentation.h"
#include "ui/library/history_view.h"

#include <QEvent>
#include <QScreen>

namespace velun {

namespace {

constexpr QSize kContentSize(960, 620);
constexpr QSize kMinSize(760, 430);
const auto kFrameName = QStringLiteral("SessionHistory");

}  // namespace

HistoryWindowController::HistoryWindowController(HistoryViewModel& model, AppSettings& settings,
                                                 HistoryActions actions, Clock& clock,
                                                 PreferenceStore* frames, QObject* parent)
    : QObject(parent), model_(model), frames_(frames) {
  auto view = std::make_unique<HistoryView>(model, settings, std::move(actions), clock);
  view_ = view.get();
  window_ = WindowPresentation::makeWindow(title(), kContentSize, std::move(view), true);
  // Large fonts need more room.
  window_->setMinimumSize(kMinSize.expandedTo(window_->minimumSizeHint())
                              .boundedTo(window_->screen()->availableSize()));
  restoreFrame(*window_, frames_, kFrameName);
  window_->installEventFilter(this);
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

bool HistoryWindowController::eventFilter(QObject* watched, QEvent* event) {
  const bool mayHaveMoved = event->type() == QEvent::Hide || event->type() == QEvent::Close ||
                            event->type() == QEvent::WindowDeactivate;
  if (watched == window_.get() && mayHaveMoved) storeFrame(*window_, frames_, kFrameName);
  return QObject::eventFilter(watched, event);
}

}  // namespace velun
