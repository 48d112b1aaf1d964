// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMenu>

namespace velun {

/// A menu of the caption panel, dark like it.
class CaptionMenu final : public QMenu {
  Q_OBJECT

 public:
  explicit CaptionMenu(QWidget* parent);

  /// Rounded corners need a compositor.
  void setRounded(bool rounded);

  /// A submenu in the same look.
  CaptionMenu* addCaptionMenu(const QString& menuTitle);
};

}  // namespace velun
