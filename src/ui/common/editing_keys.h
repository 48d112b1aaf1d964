// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QLineEdit;

namespace velun {

/// Keeps the keys that edit words in a text field for it, although a command of the window has the
/// same: the toolkit would run the command instead.
void keepEditingKeys(QLineEdit& field);

}  // namespace velun
