// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace velun {

class CaptionViewModel;
class ModalQuestion;

/// Asks whether to save the unsaved lines, with `title` as the message. Asks only if there are any
/// and either the setting "ask before discarding" is on or the last write failed. Returns true if
/// the lines are saved or may be discarded, false if the action must be cancelled.
bool confirmDiscarding(CaptionViewModel& model, const QString& title, ModalQuestion& question);

}  // namespace velun
