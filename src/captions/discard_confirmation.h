// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace velun {

class CaptionViewModel;
class ModalQuestion;

/// Asks, under `title`, what is to become of unsaved lines, when there are any and the settings or
/// a failed write say so. True: go on, the lines are saved or may be lost. False: stop the action.
bool confirmDiscarding(CaptionViewModel& model, const QString& title, ModalQuestion& question);

}  // namespace velun
