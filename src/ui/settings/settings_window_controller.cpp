// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/settings_window_controller.h"

#include "language/localization.h"
#include "ui/common/window_presentation.h"
#include "ui/models/models_page.h"
#include "ui/settings/appearance_view.h"
#include "ui/settings/captions_page.h"
#include "ui/settings/general_page.h"
#include "ui/settings/sessions_page.h"
#include "ui/settings/settings_pages.h"
#include "ui/settings/translation_page.h"

namespace velun {

namespace {

constexpr QSize kContentSize(640, 620);

}  // namespace

SettingsWindowController::SettingsWindowController(CaptionViewModel& model,
                                                   std::function<void()> openRecordsFolder,
                                                   const SettingsNotes* notes,
                                                   const ModelServices* models,
                                                   const DesktopSettings& desktop) {
  AppSettings& settings = model.settings();
  auto* captions = new CaptionsPage(model, notes, desktop);
  connect(captions, &CaptionsPage::modelsRequested, this, &SettingsWindowController::showModels);
  std::vector<SettingsPages::Page> pages{
      {new GeneralPage(settings, desktop), "gearshape", &GeneralPage::title},
      {captions, "text.bubble", &CaptionsPage::title},
      {new AppearanceView(settings), "textformat", &AppearanceView::title}};
  if (models) {
    models_ = new ModelsPage(model, *models);
    pages.push_back({models_, "globe", &ModelsPage::title});
  }
  pages.push_back({new TranslationPage(model), "translate", &TranslationPage::title});
  pages.push_back({new SessionsPage(settings, std::move(openRecordsFolder), desktop), "folder",
                   &SessionsPage::title});
  auto view = std::make_unique<SettingsPages>(std::move(pages));
  pages_ = view.get();
  window_ = WindowPresentation::makeWindow(title(), kContentSize, std::move(view), false);
  window_->setObjectName("Settings");
}

SettingsWindowController::~SettingsWindowController() = default;

void SettingsWindowController::show() {
  WindowPresentation::present(*window_);
}

void SettingsWindowController::showModels() {
  if (models_) pages_->showPage(*models_);
}

void SettingsWindowController::updateTitle() {
  window_->setWindowTitle(title());
}

QString SettingsWindowController::title() {
  return L("Velun Settings", "Velun 설정");
}

}  // namespace velun
