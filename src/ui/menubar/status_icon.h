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

  /// For hosts that colour symbolic icons: the installed icon, known by its name. Before the
  /// program is installed the same as outlined().
  static QIcon symbolic(bool paused);
  /// The figure in `colour`, drawn at the requested size.
  static QIcon drawn(bool paused, const QColor& colour);
  /// The figure in white with a dark outline, which can be read on light and dark bars.
  static QIcon outlined(bool paused);

  /// The tool tip and accessible name, in the interface language.
  static QString description(bool paused);
};

}  // namespace velun
