// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/window_look.h"

#include <QApplication>
#include <utility>

namespace velun {

namespace {

bool isDark(const QPalette& palette) {
  return palette.color(QPalette::Window).lightness() < 128;
}

/// What Qt's theme for KDE takes where the user has chosen no colours (a grey of KDE 4): the
/// desktop itself shows others then.
bool isStandIn(const QPalette& palette) {
  return palette.color(QPalette::Window) == QColor(0xd6, 0xd2, 0xd0);
}

}  // namespace

QPalette highContrastPalette(bool dark) {
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

QPalette schemePalette(bool dark) {
  const QColor window = dark ? QColor(36, 36, 40) : QColor(239, 239, 240);
  const QColor text = dark ? QColor(240, 240, 242) : QColor(30, 30, 33);
  const QColor faint = dark ? QColor(130, 130, 136) : QColor(140, 140, 146);
  // The constructor derives the shades of edges.
  QPalette palette(dark ? QColor(54, 54, 60) : QColor(246, 246, 247), window);
  for (const QPalette::ColorRole role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
    palette.setColor(role, text);
    palette.setColor(QPalette::Disabled, role, faint);
  }
  palette.setColor(QPalette::Base, dark ? QColor(27, 27, 30) : QColor(Qt::white));
  palette.setColor(QPalette::AlternateBase, dark ? QColor(32, 32, 36) : QColor(247, 247, 248));
  palette.setColor(QPalette::ToolTipBase, dark ? QColor(54, 54, 60) : QColor(Qt::white));
  palette.setColor(QPalette::Highlight, dark ? QColor(48, 92, 148) : QColor(36, 92, 158));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::Link, dark ? QColor(134, 184, 250) : QColor(16, 76, 150));
  palette.setColor(QPalette::LinkVisited, dark ? QColor(196, 170, 250) : QColor(92, 52, 140));
  QColor hint = text;
  hint.setAlphaF(0.65F);
  palette.setColor(QPalette::PlaceholderText, hint);
  return palette;
}

void WindowLook::set(ColorScheme scheme, bool highContrast, bool reducedMotion) {
  const bool isNewPalette =
      !std::exchange(isSet_, true) || highContrast != highContrast_ || scheme != scheme_;
  scheme_ = scheme;
  highContrast_ = highContrast;
  reducedMotion_ = reducedMotion;
  if (isNewPalette) applyPalette();
  applyStyle();
}

AccessStyle::Outlines WindowLook::outlines() const {
  if (highContrast_) return AccessStyle::Outlines::strong;
  // Styles derive their lines from the window's colour, darker: in a dark one they are not seen.
  const bool isDarkened = hasOwnPalette_ && isDark(QApplication::palette());
  return isDarkened ? AccessStyle::Outlines::soft : AccessStyle::Outlines::none;
}

namespace {

/// Of the style that is adapted, if one is: such a style has no name.
QString nameOfStyle() {
  QStyle* style = QApplication::style();
  const auto* adapted = qobject_cast<const QProxyStyle*>(style);
  return adapted ? adapted->baseStyle()->name() : style->name();
}

}  // namespace

void WindowLook::applyStyle() {
  const AccessStyle::Outlines wanted = outlines();
  const bool isOld = std::exchange(styledOutlines_, wanted) == wanted;
  if (std::exchange(styledMotion_, reducedMotion_) == reducedMotion_ && isOld) return;
  if (styleName_.isEmpty()) styleName_ = nameOfStyle();
  // The focus of the style that most desktops leave to us is hardly visible.
  const bool isFaint = styleName_ == QLatin1String("fusion");
  if (isFaint || wanted != AccessStyle::Outlines::none || reducedMotion_) {
    QApplication::setStyle(new AccessStyle(styleName_, wanted, reducedMotion_));
  } else {
    QApplication::setStyle(std::exchange(styleName_, QString()));
  }
}

void WindowLook::applyPalette() {
  // An empty palette restores the desktop's, which has to be known.
  if (std::exchange(hasOwnPalette_, false)) QApplication::setPalette(QPalette());
  const bool isDesktopDark = isDark(QApplication::palette());
  const bool dark = scheme_ == ColorScheme::any ? isDesktopDark : scheme_ == ColorScheme::dark;
  hasOwnPalette_ = highContrast_ || dark != isDesktopDark || isStandIn(QApplication::palette());
  if (!hasOwnPalette_) return;
  QApplication::setPalette(highContrast_ ? highContrastPalette(dark) : schemePalette(dark));
}

}  // namespace velun
