// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAccessible>

class QToolButton;
class QWidget;

namespace velun {

/// Sets the role that screen readers see, for widgets that Qt reports as plain containers. Call it
/// in the widget's constructor: screen readers read the role once. Main thread.
void setAccessibleRole(QWidget& widget, QAccessible::Role role);

/// Lets screen readers open the menu of a button with InstantPopup; Qt offers that action but does
/// nothing. Call it when the button is created. Main thread.
void setOpensMenu(QToolButton& button);

/// Lets screen readers find a popup that a command in the menu of the button opens; Qt lists no
/// popups. The popup must outlive the button. Main thread.
void setOpensPopup(QToolButton& button, QWidget& popup);

/// Makes screen readers announce a visible notification whose text has changed. They announce one
/// that appears without this. Main thread.
void announce(QWidget& notification);

/// Hides a decorative widget from screen readers. Call it in the widget's constructor. Main thread.
void hideFromAccessibility(QWidget& widget);

}  // namespace velun
