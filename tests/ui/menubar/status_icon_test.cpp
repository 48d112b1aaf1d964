// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menubar/status_icon.h"

#include "language/localization.h"
#include "support/suite.h"

#include <cmath>
#include <QImage>
#include <QLineF>
#include <QTransform>

using namespace velun;

namespace {

/// Curves are flattened to polygons. In points, or degrees.
constexpr double kTolerance = 0.1;

bool isNear(double a, double b) {
  return std::abs(a - b) < kTolerance;
}

/// The narrowest box around a polygon and its tilt in degrees, clockwise.
struct Box {
  QSizeF size{100, 100};
  double tilt = 0;
};

Box uprightBox(const QPolygonF& polygon) {
  Box narrowest;
  for (double tilt = -45; tilt <= 45; tilt += 0.25) {
    const QSizeF size = QTransform().rotate(-tilt).map(polygon).boundingRect().size();
    if (size.width() < narrowest.size.width()) narrowest = {size, tilt};
  }
  return narrowest;
}

/// How much of the image is covered by the figure, 0 to 1, and whether all of it has one colour.
struct Coverage {
  double share = 0;
  bool isOneColour = true;
};

Coverage coverageOf(const QIcon& icon, const QSize& size, const QColor& colour) {
  const QImage image = icon.pixmap(size).toImage().convertToFormat(QImage::Format_ARGB32);
  Coverage coverage;
  int covered = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      const QColor pixel = image.pixelColor(x, y);
      if (pixel.alpha() < 128) continue;
      ++covered;
      if (pixel.alpha() == 255 && pixel.rgb() != colour.rgb()) coverage.isOneColour = false;
    }
  }
  coverage.share = double(covered) / (image.width() * image.height());
  return coverage;
}

}  // namespace

class StatusIconTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void figuresStayInsideTheImage() {
    const QRectF image(QPointF(), StatusIcon::kSize);
    QCOMPARE(StatusIcon::kSize, QSizeF(19, 18));
    QVERIFY(image.contains(StatusIcon::make(false).boundingRect()));
    QVERIFY(image.contains(StatusIcon::make(true).boundingRect()));
  }

  void wavesStandBesideTheFaceOnlyWhileCaptionsAreOn() {
    const QPainterPath active = StatusIcon::make(false);
    const QPainterPath paused = StatusIcon::make(true);
    // The outer wave ends at its radius of 7.3 from the middle of the arcs.
    QVERIFY(active.boundingRect().right() > 17.5);
    QVERIFY(paused.boundingRect().right() < 16);
    // One subpath each for head, two ears and two eyes; the waves are two bands and four dots.
    const auto subpaths = [](const QPainterPath& path) {
      return path.toSubpathPolygons().size();
    };
    QCOMPARE(subpaths(paused), 5);
    QCOMPARE(subpaths(active), 5 + 6);
  }

  void earsAreTiltedRoundedRectangles() {
    for (const bool paused : {false, true}) {
      const QList<QPolygonF> parts = StatusIcon::make(paused).toSubpathPolygons();
      const Box left = uprightBox(parts[1]);
      const Box right = uprightBox(parts[2]);
      for (const Box& ear : {left, right}) {
        QVERIFY2(isNear(ear.size.width(), 3.9), qPrintable(QString::number(ear.size.width())));
        QVERIFY2(isNear(ear.size.height(), 7.6), qPrintable(QString::number(ear.size.height())));
      }
      QVERIFY2(isNear(left.tilt, -right.tilt), "they lean away from each other");
      QVERIFY(left.tilt != 0);
    }
  }

  void wavesHaveTheirRadiiAnglesAndDots() {
    const QList<QPolygonF> parts = StatusIcon::make(false).toSubpathPolygons();
    struct Wave {
      int first;
      double inner;
      double outer;
      double halfAngle;
      double dotOffset;
    };
    for (const Wave& wave : {Wave{5, 3.5, 4.9, 32, 2.2257}, Wave{8, 5.9, 7.3, 30, 3.3}}) {
      const QRectF band = parts[wave.first].boundingRect();
      // The outer arc ends at its radius to the right of the common centre.
      const QPointF centre(band.right() - wave.outer, band.center().y());
      double nearest = 100;
      double widest = 0;
      for (const QPointF& point : parts[wave.first]) {
        const QLineF ray(centre, point);
        nearest = std::min(nearest, ray.length());
        widest = std::max(widest, std::abs(std::atan2(ray.dy(), ray.dx())) * 180 / M_PI);
        QVERIFY(ray.length() < wave.outer + kTolerance);
      }
      QVERIFY2(isNear(nearest, wave.inner), qPrintable(QString::number(nearest)));
      QVERIFY2(isNear(widest, wave.halfAngle), qPrintable(QString::number(widest)));
      for (const int dot : {wave.first + 1, wave.first + 2}) {
        const QRectF box = parts[dot].boundingRect();
        QVERIFY(isNear(box.width(), 1.4) && isNear(box.height(), 1.4));
        QVERIFY(isNear(std::abs(box.center().y() - centre.y()), wave.dotOffset));
        QVERIFY(isNear(QLineF(centre, box.center()).length(), (wave.inner + wave.outer) / 2));
      }
    }
  }

  void imagesAreDrawnInTheColourThatIsAskedFor() {
    const QColor colour(10, 200, 30);
    for (const QSize& size : {QSize(19, 18), QSize(22, 22), QSize(64, 64)}) {
      const Coverage active = coverageOf(StatusIcon::drawn(false, colour), size, colour);
      const Coverage paused = coverageOf(StatusIcon::drawn(true, colour), size, colour);
      QVERIFY(active.isOneColour && paused.isOneColour);
      QVERIFY(active.share > 0.25 && active.share < 0.6);
      QVERIFY(paused.share > 0.2 && paused.share < active.share);
    }
  }

  void outlinedFigureCanBeReadOnEveryBar() {
    for (const bool paused : {false, true}) {
      for (const int size : {16, 22, 64}) {
        const QImage image = StatusIcon::outlined(paused).pixmap(size).toImage();
        int light = 0;
        int dark = 0;
        for (int y = 0; y < image.height(); ++y) {
          for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            if (pixel.alpha() < 128) continue;
            light += pixel.lightness() > 200;
            dark += pixel.lightness() < 100;
          }
        }
        const int all = image.width() * image.height();
        QVERIFY2(light * 100 > 15 * all, qPrintable(QString::number(light)));
        QVERIFY2(dark * 100 > 5 * all, qPrintable(QString::number(dark)));
        // The outline is not cut off at the sides.
        for (int y = 0; y < size; ++y) {
          QVERIFY(image.pixelColor(0, y).alpha() < 128);
          QVERIFY(image.pixelColor(size - 1, y).alpha() < 128);
        }
      }
    }
  }

  void iconIsKnownByNameOnlyOnceInstalled() {
    QVERIFY(StatusIcon::symbolic(true).name().isEmpty());
    QCOMPARE(StatusIcon::symbolic(true).pixmap(32).toImage(),
             StatusIcon::outlined(true).pixmap(32).toImage());
  }

  void descriptionsSayTheState() {
    QCOMPARE(StatusIcon::description(false), QString("Velun · Captions On"));
    QCOMPARE(StatusIcon::description(true), QString("Velun · Captions Stopped"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(StatusIcon::description(false), QString("Velun · 자막 실행 중"));
    QCOMPARE(StatusIcon::description(true), QString("Velun · 자막 중지됨"));
  }
};

QTEST_MAIN(StatusIconTest)
#include "status_icon_test.moc"
