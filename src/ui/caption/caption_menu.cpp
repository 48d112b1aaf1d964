// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/caption_menu.h"

#include <QString>

namespace velun {

namespace {

constexpr char kStyle[] = R"(
QMenu { background: #26262a; color: rgba(255,255,255,235); border: 1px solid rgba(255,255,255,28);
        border-radius: %1px; padding: 5px; }
QMenu::item { padding: 6px 26px 6px 28px; border-radius: 5px; margin: 0; }
QMenu::item:selected { background: #3d6ea8; }
QMenu::item:disabled { color: rgba(255,255,255,89); }
QMenu::separator { height: 1px; background: rgba(255,255,255,26); margin: 5px 8px; }
QMenu::indicator { width: 14px; height: 14px; left: 7px; }
QMenu::indicator:checked { image: url(:/symbols/white/checkmark.svg); }
QMenu::icon { left: 7px; }
)";
constexpr int kCorner = 9;

}  // namespace

CaptionMenu::CaptionMenu(QWidget* parent) : QMenu(parent) {
  setWindowFlag(Qt::FramelessWindowHint);
  setWindowFlag(Qt::NoDropShadowWindowHint);
  setAttribute(Qt::WA_TranslucentBackground);
  setToolTipsVisible(true);
  setRounded(true);
}

void CaptionMenu::setRounded(bool rounded) {
  setStyleSheet(QString::fromLatin1(kStyle).arg(rounded ? kCorner : 0));
}

CaptionMenu* CaptionMenu::addCaptionMenu(const QString& menuTitle) {
  auto* menu = new CaptionMenu(this);
  menu->setTitle(menuTitle);
  addMenu(menu);
  return menu;
}

}  // namespace velun
