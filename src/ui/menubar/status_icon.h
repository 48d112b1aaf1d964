// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QIcon>
#include <QPainterPath>
#include <QSizeF>
#include <QString>

namespace velun {

/// The image of the status icon: a face with upright ears, with sound waves beside it while
/// captions are on.
struct StatusIcon {
  /// In points.
  static constexpr QSizeF kSize{19, 18};

  /// The outline of the figure inside `kSize`, y downwards, to be filled with one colour.
  static QPainterPath make(bool paused);

  /// The icon. A host that colours symbolic icons itself gets the installed icon by its name;
  /// others get the figure drawn in `colour` at the requested size.
  static QIcon active(const QColor& colour);
  static QIcon paused(const QColor& colour);

  /// The tool tip and accessible name, in the interface language.
  static QString description(bool paused);
};

}  // namespace velun
