// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAccessible>

class QToolButton;
class QWidget;

namespace velun {

/// Tells assistive technology what a widget is, where the toolkit takes it for a mere container.
/// For the widget's constructor: assistive technology asks once. Main thread.
void setAccessibleRole(QWidget& widget, QAccessible::Role role);

/// Lets assistive technology open the menu of a button that opens it as soon as it is pressed: the
/// toolkit offers that and then does nothing. For when the button is made. Main thread.
void setOpensMenu(QToolButton& button);

/// Lets a screen reader speak of a notification that is in view and says something else now: it
/// speaks of one that appears by itself. Main thread.
void announce(QWidget& notification);

/// Keeps a widget that tells nothing in words out of assistive technology's sight. For the widget's
/// constructor. Main thread.
void hideFromAccessibility(QWidget& widget);

}  // namespace velun
