// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menubar/status_menu.h"

#include "captions/caption_view_model.h"
#include "language/localization.h"

namespace velun {

StatusMenu::StatusMenu(const CaptionViewModel& model, AppCommands& commands)
    : model_(model), commands_(commands) {
  using enum AppCommand;
  add({toggleCaptions});
  add({selectComputer, selectMicrophone, selectBoth});
  add({toggleKeepOnTop, toggleClickThrough, togglePanel, restorePosition});
  add({saveSession, showHistory, newSession});
  add({showSettings, checkForUpdates, terminate});
  items_.back().item->setShortcut(commands.action(terminate).shortcut());

  showCommands();
  connect(this, &QMenu::aboutToShow, &commands, &AppCommands::refresh);
  // Some hosts show the menu that they fetched last without asking, so it is kept up to date.
  connect(&commands, &AppCommands::refreshed, this, [this] {
    if (!isVisible()) showCommands();
  });
}

void StatusMenu::add(const std::vector<AppCommand>& section) {
  if (!isEmpty()) addSeparator();
  for (const AppCommand command : section) {
    QAction* item = addItem(*this, commands_.action(command));
    items_.push_back({item, command});
    // A checkable item has toggled its own mark, even if the command did nothing.
    connect(item, &QAction::triggered, this, &StatusMenu::showCommands);
  }
}

void StatusMenu::showCommands() {
  for (const auto& [item, command] : items_) {
    if (command == AppCommand::togglePanel) {
      item->setText(commands_.windows().isPanelVisible ? L("Hide Caption Window", "자막 창 숨기기")
                                                       : L("Show Caption Window", "자막 창 보기"));
    } else if (command == AppCommand::saveSession) {
      showSaving(*item);
    } else {
      showCommand(*item, commands_.action(command));
    }
  }
}

void StatusMenu::showSaving(QAction& item) const {
  const QAction& save = commands_.action(AppCommand::saveSession);
  const bool isSaved = model_.savedURL() && !model_.saveError();
  item.setText(model_.isSavingSession() ? L("Saving Current Session", "현재 세션 저장 중")
                                        : save.text());
  item.setEnabled(save.isEnabled() && !isSaved);
  item.setCheckable(isSaved);
  item.setChecked(isSaved);
}

}  // namespace velun
