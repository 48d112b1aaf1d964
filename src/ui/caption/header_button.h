// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/caption/panel_button.h"

namespace velun {

/// A flat button on the dark panel: a symbol, optionally a text beside it and a mark that it opens
/// a menu.
class HeaderButton : public PanelButton {
  Q_OBJECT

 public:
  enum class Shape { plain, filled };

  explicit HeaderButton(QWidget* parent = nullptr, Shape shape = Shape::plain);

  void setSymbol(const QString& name);
  const QString& symbol() const { return symbol_; }

  /// The tool tip and the name for screen readers; `help` replaces the tool tip.
  void setLabel(const QString& label, const QString& help = QString());

  /// A text to the right of the symbol; empty for none.
  void setCaption(const QString& caption);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  /// A button keeps the keyboard focus while it is disabled for a moment.
  bool focusNextPrevChild(bool next) override;

 private:
  QRect symbolRect() const;

  Shape shape_;
  QString symbol_;
  QString caption_;
};

}  // namespace velun
