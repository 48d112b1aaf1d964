// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menubar/status_icon.h"

#include "language/localization.h"

#include <cmath>
#include <numbers>
#include <QIconEngine>
#include <QPainter>
#include <QTransform>

namespace velun {

namespace {

/// The center of the face. Without waves the face moves to the center of the image.
constexpr QPointF kFaceCenter(6.9, 12.1);
constexpr double kPausedShift = 2.6;
constexpr QSizeF kFaceRadii(5.6, 4.9);
constexpr double kEarTilt = 12;
/// The common center of both waves, at the right side of the face.
constexpr QPointF kWaveCenter(10.6, 11.4);

QPainterPath ear(double side) {
  QPainterPath path;
  path.addRoundedRect(QRectF(-1.95, -7.6, 3.9, 7.6), 1.95, 1.95);
  return QTransform()
      .translate(kFaceCenter.x() + side * 2.7, kFaceCenter.y() - 3.2)
      .rotate(side * kEarTilt)
      .map(path);
}

/// The outlines run in one direction and the eyes in the other, so that winding fill joins the
/// former and leaves the latter open. (QPainterPath::united would flatten curves of this size.)
QPainterPath face(bool paused) {
  QPainterPath head;
  head.setFillRule(Qt::WindingFill);
  head.addEllipse(kFaceCenter, kFaceRadii.width(), kFaceRadii.height());
  head.addPath(ear(-1));
  head.addPath(ear(1));
  for (const double side : {-1.0, 1.0}) {
    const QPointF center = kFaceCenter + QPointF(side * 2.1, -0.3);
    QPainterPath eye;
    if (paused) {
      // Closed eyes.
      eye.addRoundedRect(QRectF(center.x() - 1.1, center.y() - 0.4, 2.2, 0.9), 0.45, 0.45);
    } else {
      eye.addEllipse(center, 0.85, 0.95);
    }
    head.addPath(eye.toReversed());
  }
  return head;
}

/// An arc with round ends, symmetric about the horizontal axis. Radii in points, the half angle in
/// degrees.
QPainterPath wave(double inner, double outer, double halfAngle) {
  const auto square = [](double radius) {
    return QRectF(kWaveCenter.x() - radius, kWaveCenter.y() - radius, 2 * radius, 2 * radius);
  };
  QPainterPath band;
  band.arcMoveTo(square(outer), halfAngle);
  band.arcTo(square(outer), halfAngle, -2 * halfAngle);
  band.arcTo(square(inner), -halfAngle, 2 * halfAngle);
  band.closeSubpath();

  const double middle = (inner + outer) / 2;
  const double angle = halfAngle * std::numbers::pi / 180;
  const double dot = (outer - inner) / 2;
  for (const double side : {-1.0, 1.0}) {
    band.addEllipse(
        kWaveCenter + QPointF(middle * std::cos(angle), side * middle * std::sin(angle)), dot, dot);
  }
  return band;
}

/// The outline on each side of the figure, in points, and its colour.
constexpr double kOutline = 1.1;
const QColor kOutlineColour(24, 24, 28);

/// Draws the figure at the requested size.
class FigureEngine final : public QIconEngine {
 public:
  FigureEngine(bool paused, const QColor& colour, bool isOutlined)
      : paused_(paused), colour_(colour), isOutlined_(isOutlined) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode, QIcon::State) override {
    const QSizeF scaled = StatusIcon::kSize.scaled(rect.size(), Qt::KeepAspectRatio);
    const double scale = scaled.width() / StatusIcon::kSize.width();
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(rect.x() + (rect.width() - scaled.width()) / 2,
                       rect.y() + (rect.height() - scaled.height()) / 2);
    painter->scale(scale, scale);
    const QPainterPath figure = StatusIcon::make(paused_);
    if (isOutlined_) {
      // The outline needs room inside the image.
      const QSizeF size = StatusIcon::kSize;
      painter->translate(kOutline, kOutline);
      painter->scale(1 - 2 * kOutline / size.width(), 1 - 2 * kOutline / size.height());
      painter->strokePath(
          figure, QPen(kOutlineColour, 2 * kOutline, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    }
    painter->fillPath(figure, colour_);
    painter->restore();
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, pixmap.rect(), mode, state);
    return pixmap;
  }

  QIconEngine* clone() const override { return new FigureEngine(*this); }

 private:
  bool paused_;
  QColor colour_;
  bool isOutlined_;
};

}  // namespace

QPainterPath StatusIcon::make(bool paused) {
  if (paused) return QTransform::fromTranslate(kPausedShift, 0).map(face(true));
  QPainterPath figure = face(false);
  figure.addPath(wave(3.5, 4.9, 32));
  figure.addPath(wave(5.9, 7.3, 30));
  return figure;
}

QIcon StatusIcon::symbolic(bool paused) {
  return QIcon::fromTheme(paused ? "app.velun.Velun-paused-symbolic" : "app.velun.Velun-symbolic",
                          outlined(paused));
}

QIcon StatusIcon::drawn(bool paused, const QColor& colour) {
  return QIcon(new FigureEngine(paused, colour, false));
}

QIcon StatusIcon::outlined(bool paused) {
  return QIcon(new FigureEngine(paused, Qt::white, true));
}

QString StatusIcon::description(bool paused) {
  return paused ? L("Velun · Captions Stopped", "Velun · 자막 중지됨")
                : L("Velun · Captions On", "Velun · 자막 실행 중");
}

}  // namespace velun
