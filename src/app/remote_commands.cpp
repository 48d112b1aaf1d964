// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/remote_commands.h"

#include "captions/caption_view_model.h"
#include "platform/desktop/application_service.h"
#include "ui/common/app_commands.h"

namespace velun {

namespace {

/// An additional action for all inputs. Its parameter and its state are the raw value of the
/// choice.
const auto kInput = QStringLiteral("input");
/// The device of the input, by its id; empty for the computer's default one.
const auto kDevice = QStringLiteral("device");
/// The program that is captioned alone, or not at all; empty for all programs.
const auto kOnlyProgram = QStringLiteral("only-program");
const auto kExceptProgram = QStringLiteral("except-program");

/// The actions that choose what is captioned, with their states.
std::vector<std::pair<QString, QString>> sourceStates(const AppSettings& settings) {
  const ProgramChoice& program = settings.program();
  const bool isOnly = program.scope == ProgramChoice::Scope::only;
  return {{kDevice, settings.device().id},
          {kOnlyProgram, isOnly ? program.name : QString()},
          {kExceptProgram, isOnly ? QString() : program.name}};
}

bool choosesSource(const QString& name) {
  return name == kDevice || name == kOnlyProgram || name == kExceptProgram;
}

void chooseSource(AppSettings& settings, const QString& name, const QString& value) {
  if (name == kDevice) return settings.setDevice({value, {}});
  const bool isOnly = name == kOnlyProgram;
  settings.setProgram({isOnly ? ProgramChoice::Scope::only : ProgramChoice::Scope::allBut, value});
}

}  // namespace

RemoteCommands::RemoteCommands(const AppCommands& commands, const CaptionViewModel& model,
                               ApplicationService& application)
    : commands_(commands), model_(model), application_(application) {
  connect(&commands, &AppCommands::refreshed, this, &RemoteCommands::publish);
  for (const auto signal : {&AppSettings::outputChanged, &AppSettings::microphoneChanged,
                            &AppSettings::programChanged}) {
    connect(&model.settings(), signal, this, &RemoteCommands::publish);
  }
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
  actions.push_back({.name = kInput,
                     .parameterType = "s",
                     .isEnabled = commands_.action(AppCommand::selectComputer).isEnabled(),
                     .state = rawValue(model_.settings().inputChoice())});
  for (const auto& [name, state] : sourceStates(model_.settings())) {
    actions.push_back({.name = name,
                       .parameterType = "s",
                       .isEnabled = commands_.action(AppCommand::selectComputer).isEnabled(),
                       .state = state});
  }
  application_.setActions(actions);
}

void RemoteCommands::carryOut(const QString& name, const QVariant& parameter) {
  if (name == kInput) {
    const auto choice = inputChoiceFromRawValue(parameter.toString());
    if (choice) commands_.action(selectCommand(*choice)).trigger();
  } else if (choosesSource(name)) {
    if (commands_.action(AppCommand::selectComputer).isEnabled()) {
      chooseSource(model_.settings(), name, parameter.toString());
    }
  } else if (QAction* action = commands_.find(name)) {
    action->trigger();
  }
}

}  // namespace velun
