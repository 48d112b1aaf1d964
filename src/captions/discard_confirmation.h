// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace velun {

class CaptionViewModel;
class ModalQuestion;

/// Asks whether to save the unsaved lines, with `title` as the message. It asks only if there are
/// any and either the settings want the question or the last write failed. Returns true to go on
/// (the lines are saved or may be discarded), false to cancel the action.
bool confirmDiscarding(CaptionViewModel& model, const QString& title, ModalQuestion& question);

}  // namespace velun
