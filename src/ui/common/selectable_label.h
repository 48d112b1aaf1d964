// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/common/padded_label.h"

namespace velun {

/// A label whose text can be copied where its interaction flags let the user select it: with
/// Ctrl+C, from its context menu, and by the commands of the window's Edit menu. Copies plain text;
/// QLabel would also copy its font and size.
class SelectableLabel : public PaddedLabel {
  Q_OBJECT

 public:
  using PaddedLabel::PaddedLabel;

 public Q_SLOTS:
  /// Does nothing without a selection.
  void copy();
  void selectAll();

 protected:
  bool event(QEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  bool isSelectable() const { return textInteractionFlags().testFlag(Qt::TextSelectableByMouse); }
};

}  // namespace velun
