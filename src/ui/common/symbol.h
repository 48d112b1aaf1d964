// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QIcon>
#include <QPixmap>
#include <QString>

namespace velun {

/// One of the program's own line icons, by its symbol name ("play.fill"). Follows the text colour
/// of the palette unless a colour is given; sharp at every scale. Main thread.
QIcon symbolIcon(const QString& name, const QColor& color = QColor());

/// The same icon as a pixmap of `points` by `points` at a device pixel ratio.
QPixmap symbolPixmap(const QString& name, int points, const QColor& color, qreal ratio);

}  // namespace velun
