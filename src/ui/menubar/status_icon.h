// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QIcon>
#include <QPainterPath>
#include <QSizeF>
#include <QString>

namespace velun {

/// The status item's image: a face with upright ears, with sound waves beside it while captions
/// are on.
struct StatusIcon {
  /// In points.
  static constexpr QSizeF kSize{19, 18};

  /// The figure inside `kSize`, y downwards, to be filled in one colour.
  static QPainterPath make(bool paused);

  /// The image. A host that colours symbolic icons itself gets the installed one by its name;
  /// every other gets the figure drawn in `colour` at the size it asks for.
  static QIcon active(const QColor& colour);
  static QIcon paused(const QColor& colour);

  /// What the image says, in the interface language.
  static QString description(bool paused);
};

}  // namespace velun
