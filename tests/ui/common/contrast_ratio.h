// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>

namespace velun::test {

/// The contrast ratio (1 to 21) of a colour, which may be translucent, on an opaque background, as
/// defined by the Web Content Accessibility Guidelines 2.
double contrastRatio(const QColor& color, const QColor& background);

}  // namespace velun::test
