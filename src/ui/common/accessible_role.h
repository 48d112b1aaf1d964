// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAccessible>

class QWidget;

namespace velun {

/// Tells assistive technology what a widget is, where the toolkit takes it for a mere container.
/// For the widget's constructor: assistive technology asks once. Main thread.
void setAccessibleRole(QWidget& widget, QAccessible::Role role);

/// Keeps a widget that tells nothing in words out of assistive technology's sight. For the widget's
/// constructor. Main thread.
void hideFromAccessibility(QWidget& widget);

}  // namespace velun
