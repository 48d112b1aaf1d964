// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/remote_commands.h"

#include "captions/caption_view_model.h"
#include "platform/desktop/application_service.h"
#include "ui/common/app_commands.h"

namespace velun {

namespace {

/// An additional action for both inputs. Its parameter and its state are the raw value of the
/// input.
const auto kInput = QStringLiteral("input");

}  // namespace

RemoteCommands::RemoteCommands(const AppCommands& commands, const CaptionViewModel& model,
                               ApplicationService& application)
    : commands_(commands), model_(model), application_(application) {
  connect(&commands, &AppCommands::refreshed, this, &RemoteCommands::publish);
  connect(&application, &ApplicationService::actionRequested, this, &RemoteCommands::carryOut);
  publish();
}

void RemoteCommands::publish() {
  std::vector<ApplicationAction> actions;
  for (const QAction* action : commands_.actions()) {
    if (action->objectName().isEmpty()) continue;
    actions.push_back(
        {.name = action->objectName(), .isEnabled = action->isEnabled(), .state = action->data()});
  }
  // Read-only: toggle-captions changes it.
  actions.push_back({.name = "running", .isEnabled = false, .state = model_.isRunning()});
  const bool useMic = model_.settings().useMic();
  actions.push_back({.name = kInput,
                     .parameterType = "s",
                     .isEnabled = commands_.action(AppCommand::selectComputer).isEnabled(),
                     .state = rawValue(useMic ? AudioInput::microphone : AudioInput::computer)});
  application_.setActions(actions);
}

void RemoteCommands::carryOut(const QString& name, const QVariant& parameter) {
  if (name == kInput) {
    const auto input = audioInputFromRawValue(parameter.toString());
    if (!input) return;
    const bool useMic = *input == AudioInput::microphone;
    commands_.action(useMic ? AppCommand::selectMicrophone : AppCommand::selectComputer).trigger();
  } else if (QAction* action = commands_.find(name)) {
    action->trigger();
  }
}

}  // namespace velun
