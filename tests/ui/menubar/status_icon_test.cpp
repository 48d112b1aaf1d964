// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menubar/status_icon.h"

#include "language/localization.h"
#include "support/suite.h"

#include <QImage>

using namespace velun;

namespace {

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

  void imagesAreDrawnInTheColourThatIsAskedFor() {
    const QColor colour(10, 200, 30);
    for (const QSize& size : {QSize(19, 18), QSize(22, 22), QSize(64, 64)}) {
      const Coverage active = coverageOf(StatusIcon::active(colour), size, colour);
      const Coverage paused = coverageOf(StatusIcon::paused(colour), size, colour);
      QVERIFY(active.isOneColour && paused.isOneColour);
      QVERIFY(active.share > 0.25 && active.share < 0.6);
      QVERIFY(paused.share > 0.2 && paused.share < active.share);
    }
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
