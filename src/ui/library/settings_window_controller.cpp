// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/settings_window_controller.h"

#include "language/localization.h"
#include "ui/common/window_presentation.h"
#include "ui/library/appearance_view.h"
#include "ui/library/settings_pages.h"
#include "ui/library/settings_view.h"
#include "ui/models/models_page.h"

namespace velun {

namespace {

constexpr QSize kContentSize(460, 760);

}  // namespace

SettingsWindowController::SettingsWindowController(CaptionViewModel& model,
                                                   std::function<void()> openRecordsFolder,
                                                   const SettingsNotes* notes,
                                                   const ModelServices* models,
                                                   const DesktopSettings& desktop, QObject* parent)
    : QObject(parent) {
  auto* general = new SettingsView(model, std::move(openRecordsFolder), notes, desktop);
  auto* appearance = new AppearanceView(model.settings());
  auto pages = std::make_unique<SettingsPages>(general, appearance,
                                               models ? new ModelsPage(model, *models) : nullptr);
  pages_ = pages.get();
  window_ = WindowPresentation::makeWindow(title(), kContentSize, std::move(pages), false);
  window_->setObjectName("Settings");
}

SettingsWindowController::~SettingsWindowController() = default;

void SettingsWindowController::show() {
  WindowPresentation::present(*window_);
}

void SettingsWindowController::showModels() {
  pages_->showModels();
}

void SettingsWindowController::updateTitle() {
  window_->setWindowTitle(title());
}

QString SettingsWindowController::title() {
  return L("Velun Settings", "Velun 설정");
}

}  // namespace velun
