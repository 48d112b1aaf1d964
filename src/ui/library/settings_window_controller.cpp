// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/settings_window_controller.h"

#include "settings/localization.h"
#include "ui/common/window_presentation.h"
#include "ui/library/settings_view.h"

namespace velun {

namespace {

constexpr QSize kContentSize(460, 760);

}  // namespace

SettingsWindowController::SettingsWindowController(CaptionViewModel& model,
                                                   std::function<void()> openRecordsFolder,
                                                   SettingsNotes notes, QObject* parent)
    : QObject(parent),
      model_(model),
      openRecordsFolder_(std::move(openRecordsFolder)),
      notes_(std::move(notes)) {}

SettingsWindowController::~SettingsWindowController() = default;

void SettingsWindowController::show() {
  if (!window_) {
    auto view = std::make_unique<SettingsView>(model_, openRecordsFolder_, notes_);
    view_ = view.get();
    window_ = WindowPresentation::makeWindow(title(), kContentSize, std::move(view), false);
  }
  WindowPresentation::present(*window_);
}

void SettingsWindowController::updateTitle() {
  if (window_) window_->setWindowTitle(title());
}

QString SettingsWindowController::title() {
  return L("Velun Settings", "Velun 설정");
}

void SettingsWindowController::updateNotes() {
  if (view_) view_->updateNotes();
}

}  // namespace velun
