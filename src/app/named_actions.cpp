// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/named_actions.h"

#include "captions/caption_view_model.h"

#include <algorithm>
#include <array>

namespace velun {

namespace {

struct Name {
  const char* name;
  AppCommand command;
};

constexpr std::array kNames = {
    Name{"toggle-captions", AppCommand::toggleCaptions},
    Name{"save-session", AppCommand::saveSession},
    Name{"new-session", AppCommand::newSession},
    Name{"export-session", AppCommand::exportCurrentSession},
    Name{"show-panel", AppCommand::showPanel},
    Name{"toggle-panel", AppCommand::togglePanel},
    Name{"restore-position", AppCommand::restorePosition},
    Name{"toggle-keep-on-top", AppCommand::toggleKeepOnTop},
    Name{"select-computer", AppCommand::selectComputer},
    Name{"select-microphone", AppCommand::selectMicrophone},
    Name{"show-history", AppCommand::showHistory},
    Name{"open-session-file", AppCommand::openSessionFile},
    Name{"open-sessions-folder", AppCommand::openSessionsFolder},
    Name{"show-settings", AppCommand::showSettings},
    Name{"check-for-updates", AppCommand::checkForUpdates},
    Name{"show-about", AppCommand::showAbout},
    Name{"quit", AppCommand::terminate},
};

constexpr auto kInput = "input";

QVariant stateOf(AppCommand command, const CaptionViewModel& model, bool isPanelVisible) {
  switch (command) {
    case AppCommand::toggleCaptions:
      return model.isRunning();
    case AppCommand::togglePanel:
      return isPanelVisible;
    case AppCommand::toggleKeepOnTop:
      return model.settings().keepOnTop();
    default:
      return {};
  }
}

}  // namespace

std::vector<ApplicationAction> namedActions(
    const CaptionViewModel& model, bool isPanelVisible,
    const std::function<CommandValidation(AppCommand)>& validate) {
  std::vector<ApplicationAction> actions;
  for (const Name& name : kNames) {
    ApplicationAction action;
    action.name = name.name;
    action.isEnabled = validate(name.command).isEnabled;
    action.state = stateOf(name.command, model, isPanelVisible);
    actions.push_back(action);
  }
  ApplicationAction running;
  running.name = "running";
  running.isEnabled = false;  // to be read; changed by toggle-captions
  running.state = model.isRunning();
  actions.push_back(running);
  ApplicationAction input;
  input.name = kInput;
  input.parameterType = "s";
  input.isEnabled = validate(AppCommand::selectComputer).isEnabled;
  input.state = rawValue(model.settings().useMic() ? AudioInput::microphone : AudioInput::computer);
  actions.push_back(input);
  return actions;
}

std::optional<AppCommand> commandForAction(const QString& name, const QVariant& parameter) {
  if (name == kInput) {
    const auto input = audioInputFromRawValue(parameter.toString());
    if (!input) return std::nullopt;
    return *input == AudioInput::microphone ? AppCommand::selectMicrophone
                                            : AppCommand::selectComputer;
  }
  const auto found = std::ranges::find_if(kNames, [&](const Name& n) { return name == n.name; });
  return found == kNames.end() ? std::nullopt : std::optional(found->command);
}

}  // namespace velun
