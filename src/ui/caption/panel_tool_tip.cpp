// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/panel_tool_tip.h"

#include "ui/caption/caption_appearance.h"
#include "ui/caption/caption_menu.h"
#include "ui/caption/transcript_formats.h"

#include <algorithm>
#include <QApplication>
#include <QHelpEvent>
#include <QPainter>
#include <QScreen>

namespace velun {

namespace {

constexpr double kTextSize = 11;
constexpr int kMaxWidth = 320;
constexpr int kCorner = 6;
constexpr QMargins kPadding{9, 5, 9, 5};
/// From the pointer, which would otherwise cover the text.
constexpr QPoint kOffset{2, 20};
constexpr int kDistance = 6;

QString withoutMnemonic(QString text) {
  return text.remove(u'&');
}

bool endsToolTips(QEvent::Type type) {
  switch (type) {
    case QEvent::Leave:
    case QEvent::Hide:
    case QEvent::MouseButtonPress:
    case QEvent::KeyPress:
    case QEvent::Wheel:
    case QEvent::WindowDeactivate:
      return true;
    default:
      return false;
  }
}

}  // namespace

PanelToolTip::PanelToolTip(QWidget* window)
    : PaddedLabel(window, Qt::ToolTip | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint) {
  setAttribute(Qt::WA_TranslucentBackground);
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setAttribute(Qt::WA_ShowWithoutActivating);
  setTextFormat(Qt::PlainText);
  setFont(systemFont(kTextSize));
  setPadding(kPadding);
  QPalette colors = palette();
  colors.setColor(QPalette::WindowText, CaptionAppearance::text);
  setPalette(colors);
  qApp->installEventFilter(this);
}

void PanelToolTip::setColors(const CaptionColors& colors) {
  colors_ = colors;
  update();
}

void PanelToolTip::setRounded(bool rounded) {
  rounded_ = rounded;
  update();
}

QString PanelToolTip::textAt(const QObject* watched, const QHelpEvent& event) const {
  if (const auto* menu = qobject_cast<const CaptionMenu*>(watched)) {
    const QAction* action = menu->actionAt(event.pos());
    // By default the tool tip of an action is its text.
    const bool hasOwn = action && action->toolTip() != withoutMnemonic(action->text());
    return hasOwn ? action->toolTip() : QString();
  }
  const auto* widget = qobject_cast<const QWidget*>(watched);
  return widget && widget->window() == parentWidget() ? widget->toolTip() : QString();
}

bool PanelToolTip::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    const auto& help = static_cast<const QHelpEvent&>(*event);
    const QString text = textAt(watched, help);
    if (text.isEmpty()) return false;
    showText(text, help.globalPos(), watched);
    return true;
  }
  if (isVisible() && endsToolTips(event->type())) {
    const bool isInput = event->type() != QEvent::Leave && event->type() != QEvent::Hide;
    if (watched == source_ || isInput) hide();
  }
  return false;
}

void PanelToolTip::showText(const QString& text, const QPoint& position, QObject* source) {
  source_ = source;
  // QLabel wants at least the minimum, which the last text left.
  setMinimumSize(0, 0);
  setText(text);
  const int padding = kPadding.left() + kPadding.right();
  setWordWrap(fontMetrics().horizontalAdvance(text) + padding > kMaxWidth);
  setFixedWidth(wordWrap() ? kMaxWidth : sizeHint().width());
  setFixedHeight(wordWrap() ? heightForWidth(kMaxWidth) : sizeHint().height());
  const QScreen* screen = QGuiApplication::screenAt(position);
  QRect frame(position + kOffset, size());
  if (screen) {
    const QRect area = screen->geometry();
    const int above = parentWidget()->geometry().top() - kDistance;
    const bool isOfHeader =
        position.y() <= parentWidget()->geometry().top() + CaptionAppearance::headerHeight;
    if (isOfHeader && above - frame.height() >= area.top()) {
      // Below it are captions, which somebody may be reading.
      frame.moveBottom(above);
    } else if (frame.bottom() > area.bottom()) {
      frame.moveBottom(position.y() - kDistance);
    }
    frame.moveLeft(std::clamp(frame.left(), area.left(),
                              std::max(area.left(), area.right() + 1 - frame.width())));
  }
  move(frame.topLeft());
  show();
  raise();
}

void PanelToolTip::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(colors_.menuEdge);
  painter.setBrush(colors_.menu);
  const double corner = rounded_ ? kCorner : 0;
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), corner, corner);
  painter.end();
  PaddedLabel::paintEvent(event);
}

}  // namespace velun
