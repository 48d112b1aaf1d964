// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/application_action.h"
#include "ui/menubar/app_command.h"

#include <functional>
#include <optional>
#include <vector>

namespace velun {

class CaptionViewModel;

/// The commands under the names by which other programs ask for them, as they stand now. Those
/// that have a state carry it: whether captions run, which input is chosen, what is on.
std::vector<ApplicationAction> namedActions(
    const CaptionViewModel& model, bool isPanelVisible,
    const std::function<CommandValidation(AppCommand)>& validate);

/// The command behind a name, and for "input" behind its parameter; none when there is none.
std::optional<AppCommand> commandForAction(const QString& name, const QVariant& parameter);

}  // namespace velun
