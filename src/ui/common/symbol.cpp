// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/symbol.h"

#include <algorithm>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>

// The linker drops a static library's resources without this, which must be outside any namespace.
static void loadSymbols() {
  Q_INIT_RESOURCE(symbols);
}

namespace velun {

namespace {

constexpr double kDisabledOpacity = 0.35;

QString filePath(const QString& name) {
  static const bool loaded = (loadSymbols(), true);
  Q_UNUSED(loaded);
  return QStringLiteral(":/symbols/") + name;
}

/// Draws at the requested size and ratio, in the current colour.
class SymbolIconEngine final : public QIconEngine {
 public:
  SymbolIconEngine(QString name, const QColor& color) : name_(std::move(name)), color_(color) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    const int side = std::min(rect.width(), rect.height());
    const qreal ratio = painter->device()->devicePixelRatioF();
    const QPoint corner(rect.x() + (rect.width() - side) / 2,
                        rect.y() + (rect.height() - side) / 2);
    painter->drawPixmap(corner, symbolPixmap(name_, side, colorFor(mode), ratio));
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
    return symbolPixmap(name_, std::min(size.width(), size.height()), colorFor(mode), 1.0);
  }

  QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State, qreal scale) override {
    const int points = qRound(std::min(size.width(), size.height()) / scale);
    return symbolPixmap(name_, points, colorFor(mode), scale);
  }

  QIconEngine* clone() const override { return new SymbolIconEngine(name_, color_); }

 private:
  QColor colorFor(QIcon::Mode mode) const {
    const QPalette palette = QGuiApplication::palette();
    QColor color =
        color_.isValid() ? color_ : palette.color(QPalette::Active, QPalette::ButtonText);
    if (mode == QIcon::Selected && !color_.isValid()) {
      color = palette.color(QPalette::HighlightedText);
    }
    if (mode == QIcon::Disabled)
      color.setAlphaF(color.alphaF() * static_cast<float>(kDisabledOpacity));
    return color;
  }

  QString name_;
  QColor color_;
};

}  // namespace

QIcon symbolIcon(const QString& name, const QColor& color) {
  return QIcon(new SymbolIconEngine(name, color));
}

QPixmap symbolPixmap(const QString& name, int points, const QColor& color, qreal ratio) {
  QPixmap pixmap(QSize(points, points) * ratio);
  pixmap.setDevicePixelRatio(ratio);
  pixmap.fill(Qt::transparent);
  QSvgRenderer renderer(filePath(name));
  QPainter painter(&pixmap);
  renderer.render(&painter, QRectF(0, 0, points, points));
  painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
  painter.fillRect(QRectF(0, 0, points, points), color);
  return pixmap;
}

}  // namespace velun
