// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/settings/settings_form.h"

#include <vector>

namespace velun {

/// The entries of the page "Appearance", in the interface language. Each value is that of
/// `PanelStyle`.
/// `families` as QFontDatabase names them; those that differ by their maker only are one entry.
std::vector<Choice> familyChoices(const QStringList& families);
std::vector<Choice> weightChoices();
std::vector<Choice> spacingChoices();
std::vector<Choice> edgeChoices();
std::vector<Choice> cornerChoices();
std::vector<Choice> ratioChoices();
std::vector<Choice> orderChoices();
/// The heights of the panel; each value is a number of lines.
std::vector<Choice> lineChoices();
/// Text sizes in points.
std::vector<Choice> sizeChoices();

/// The entry of a text size.
Choice sizeChoice(double points);
/// The entry of a part of a whole, such as "80%".
Choice percentChoice(double part);
/// The entry of a space between lines.
Choice spacingChoice(double spacing);
/// The entry of a font family; empty: the desktop's.
Choice familyChoice(const QString& family);
/// The entry with this value, or one that shows the value itself.
Choice choiceOf(const std::vector<Choice>& choices, const QVariant& value);

}  // namespace velun
