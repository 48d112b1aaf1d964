// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>

namespace velun::test {

/// How well a colour, which may be translucent, stands out on an opaque background: from 1 to 21,
/// after the contrast ratio of the Web Content Accessibility Guidelines 2.
double contrastRatio(const QColor& color, const QColor& background);

}  // namespace velun::test
