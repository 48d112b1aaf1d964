// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/window_look.h"

#include "ui/common/access_style.h"

#include <QApplication>
#include <utility>

namespace velun {

QPalette highContrastPalette(const QPalette& desktops) {
  const bool dark = desktops.color(QPalette::Window).lightness() < 128;
  const QColor text = dark ? Qt::white : Qt::black;
  const QColor surface = dark ? Qt::black : Qt::white;
  const QColor strong = dark ? QColor(255, 213, 74) : QColor(0, 60, 160);
  QPalette palette(text, surface, /*light*/ surface, /*dark*/ text, /*mid*/ text, text,
                   /*bright_text*/ text, /*base*/ surface, /*window*/ surface);
  palette.setColor(QPalette::AlternateBase, surface);
  palette.setColor(QPalette::ToolTipBase, surface);
  palette.setColor(QPalette::ToolTipText, text);
  palette.setColor(QPalette::Highlight, strong);
  palette.setColor(QPalette::HighlightedText, surface);
  palette.setColor(QPalette::Link, strong);
  palette.setColor(QPalette::LinkVisited, strong);
  QColor hint = text;
  hint.setAlphaF(0.75F);
  palette.setColor(QPalette::PlaceholderText, hint);
  const QColor faint(128, 128, 128);
  for (const QPalette::ColorRole role :
       {QPalette::Text, QPalette::WindowText, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, faint);
  }
  return palette;
}

void WindowLook::set(bool highContrast, bool reducedMotion) {
  if (highContrast == highContrast_ && reducedMotion == reducedMotion_) return;
  if (styleName_.isEmpty()) styleName_ = QApplication::style()->name();
  if (highContrast || reducedMotion) {
    QApplication::setStyle(new AccessStyle(styleName_, highContrast, reducedMotion));
  } else {
    QApplication::setStyle(std::exchange(styleName_, QString()));
  }
  reducedMotion_ = reducedMotion;
  if (std::exchange(highContrast_, highContrast) == highContrast) return;
  // An empty palette restores the desktop's.
  QApplication::setPalette(highContrast ? highContrastPalette(QApplication::palette())
                                        : QPalette());
}

}  // namespace velun
