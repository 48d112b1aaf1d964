// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QLineEdit;

namespace velun {

/// Gives a text field's word-editing keys precedence over the same shortcuts of the window.
void keepEditingKeys(QLineEdit& field);

}  // namespace velun
