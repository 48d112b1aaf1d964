// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/caption_menu.h"

#include "ui/common/menu_closing.h"
#include "ui/common/symbol.h"

#include <QPainter>

namespace velun {

namespace {

constexpr char kStyle[] = R"(
QMenu { background: %3; color: rgba(255,255,255,235); border: 1px solid %4; border-radius: %1px;
        padding: 5px; }
QMenu::item { padding: 5px 25px 5px %2px; border: 1px solid transparent; border-radius: 5px;
              margin: 0; }
QMenu::item:selected { background: %5; border-color: %6; }
QMenu::item:disabled { color: rgba(255,255,255,89); }
QMenu::separator { height: 1px; background: %4; margin: 5px 8px; }
QMenu::indicator { width: 14px; height: 14px; left: 7px; }
QMenu::indicator:checked { image: url(:/symbols/white/checkmark.svg); }
QMenu::icon { left: 28px; }
)";
constexpr int kCorner = 9;
constexpr int kItemEdge = 1;
constexpr int kMarkLeft = 12;
constexpr int kMarkSize = 14;

QString styleColor(const QColor& color) {
  return QStringLiteral("rgba(%1,%2,%3,%4)")
      .arg(color.red())
      .arg(color.green())
      .arg(color.blue())
      .arg(color.alpha());
}

}  // namespace

CaptionMenu::CaptionMenu(QWidget* parent) : QMenu(parent) {
  setWindowFlag(Qt::FramelessWindowHint);
  setWindowFlag(Qt::NoDropShadowWindowHint);
  setAttribute(Qt::WA_TranslucentBackground);
  setToolTipsVisible(true);
  closeWhenChosen(*this);
  applyStyle();
}

void CaptionMenu::setRounded(bool rounded) {
  rounded_ = rounded;
  applyStyle();
}

void CaptionMenu::setMargin(Margin margin) {
  margin_ = margin;
  applyStyle();
}

void CaptionMenu::setColors(const CaptionColors& colors) {
  colors_ = colors;
  applyStyle();
}

void CaptionMenu::applyStyle() {
  const int left = static_cast<int>(margin_) - kItemEdge;
  setStyleSheet(QString::fromLatin1(kStyle)
                    .arg(rounded_ ? kCorner : 0)
                    .arg(left)
                    .arg(styleColor(colors_.menu), styleColor(colors_.menuEdge),
                         styleColor(colors_.menuSelection), styleColor(colors_.menuSelectionEdge)));
}

void CaptionMenu::paintEvent(QPaintEvent* event) {
  QMenu::paintEvent(event);
  // The style draws either a symbol or a check mark.
  QPainter painter(this);
  for (QAction* action : actions()) {
    if (!action->isChecked() || action->icon().isNull()) continue;
    const QRect row = actionGeometry(action);
    painter.drawPixmap(
        kMarkLeft, row.center().y() - kMarkSize / 2,
        symbolPixmap(QStringLiteral("checkmark"), kMarkSize, Qt::white, devicePixelRatioF()));
  }
}

}  // namespace velun
