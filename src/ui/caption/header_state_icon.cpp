// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/header_state_icon.h"

#include "ui/caption/caption_appearance.h"
#include "ui/common/accessible_role.h"
#include "ui/common/symbol.h"

#include <QPainter>

namespace velun {

namespace {

// A symbol fills its grid and a letter does not: 14 looks as large as text of size 12.
constexpr int kSymbolSize = 14;

}  // namespace

HeaderStateIcon::HeaderStateIcon(const QString& systemName, QWidget* parent)
    : QWidget(parent), systemName_(systemName) {
  setFixedSize(side, side);
  setAccessibleRole(*this, QAccessible::Graphic);
}

void HeaderStateIcon::setSymbol(const QString& systemName) {
  systemName_ = systemName;
  update();
}

void HeaderStateIcon::setLabel(const QString& label) {
  setToolTip(label);
  setAccessibleName(label);
}

void HeaderStateIcon::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const int inset = (side - kSymbolSize) / 2;
  painter.drawPixmap(inset, inset,
                     symbolPixmap(systemName_, kSymbolSize, CaptionAppearance::secondaryText,
                                  devicePixelRatioF()));
}

}  // namespace velun
