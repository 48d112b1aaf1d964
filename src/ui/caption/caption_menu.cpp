// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/caption_menu.h"

#include "ui/common/symbol.h"

#include <QPainter>

namespace velun {

namespace {

constexpr char kStyle[] = R"(
QMenu { background: #26262a; color: rgba(255,255,255,235); border: 1px solid rgba(255,255,255,28);
        border-radius: %1px; padding: 5px; }
QMenu::item { padding: 6px 26px 6px %2px; border-radius: 5px; margin: 0; }
QMenu::item:selected { background: #3d6ea8; }
QMenu::item:disabled { color: rgba(255,255,255,89); }
QMenu::separator { height: 1px; background: rgba(255,255,255,26); margin: 5px 8px; }
QMenu::indicator { width: 14px; height: 14px; left: 7px; }
QMenu::indicator:checked { image: url(:/symbols/white/checkmark.svg); }
QMenu::icon { left: 28px; }
)";
constexpr int kCorner = 9;
constexpr int kMarkLeft = 12;
constexpr int kMarkSize = 14;

}  // namespace

CaptionMenu::CaptionMenu(QWidget* parent) : QMenu(parent) {
  setWindowFlag(Qt::FramelessWindowHint);
  setWindowFlag(Qt::NoDropShadowWindowHint);
  setAttribute(Qt::WA_TranslucentBackground);
  setToolTipsVisible(true);
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

void CaptionMenu::applyStyle() {
  setStyleSheet(
      QString::fromLatin1(kStyle).arg(rounded_ ? kCorner : 0).arg(static_cast<int>(margin_)));
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

CaptionMenu* CaptionMenu::addCaptionMenu(const QString& menuTitle) {
  auto* menu = new CaptionMenu(this);
  menu->setTitle(menuTitle);
  addMenu(menu);
  return menu;
}

}  // namespace velun
