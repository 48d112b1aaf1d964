// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/localization.h"
#include "support/settle.h"
#include "support/suite.h"
#include "ui/caption/panel_stage.h"

#include <QApplication>
#include <QDir>
#include <QPainter>

using namespace velun;
using test::PanelStage;
using test::settle;

namespace {

constexpr QSize kPanel(480, 190);
// Pictures are compared at this size, in blocks large enough for another version of a font.
constexpr QSize kCompared(48, 24);
// Of a block's colours, from 0 to 255.
constexpr int kMaxDifference = 40;
constexpr double kMaxMeanDifference = 5;

/// Half light and half dark, so that a translucent background shows.
void paintBackdrop(QPainter& painter, const QSize& size) {
  QLinearGradient colors(0, 0, size.width(), 0);
  colors.setColorAt(0, QColor(36, 60, 94));
  colors.setColorAt(0.5, QColor(150, 130, 120));
  colors.setColorAt(1, QColor(250, 240, 220));
  painter.fillRect(QRect(QPoint(), size), colors);
}

QImage pictureOf(QWidget& panel, int scale) {
  QImage picture(panel.size() * scale, QImage::Format_ARGB32_Premultiplied);
  picture.setDevicePixelRatio(scale);
  // The panel replaces what is below it, as a window of its own does; a compositor blends them.
  picture.fill(Qt::transparent);
  panel.render(&picture, QPoint(), QRegion(), QWidget::DrawChildren);
  QImage whole(picture.size(), QImage::Format_RGB32);
  whole.setDevicePixelRatio(scale);
  QPainter painter(&whole);
  paintBackdrop(painter, panel.size());
  painter.drawImage(0, 0, picture);
  return whole;
}

/// The largest and the mean difference of the blocks of two pictures.
std::pair<int, double> difference(const QImage& a, const QImage& b) {
  const auto blocks = [](const QImage& image) {
    return image.scaled(kCompared, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_RGB32);
  };
  const QImage first = blocks(a);
  const QImage second = blocks(b);
  int most = 0;
  double sum = 0;
  for (int y = 0; y < kCompared.height(); ++y) {
    for (int x = 0; x < kCompared.width(); ++x) {
      const QColor one = first.pixelColor(x, y);
      const QColor two = second.pixelColor(x, y);
      const int here =
          std::max({std::abs(one.red() - two.red()), std::abs(one.green() - two.green()),
                    std::abs(one.blue() - two.blue())});
      most = std::max(most, here);
      sum += here;
    }
  }
  return {most, sum / (kCompared.width() * kCompared.height())};
}

}  // namespace

/// Every ready set as the panel shows it, against pictures that somebody has looked at. With
/// VELUN_WRITE_PICTURES in the environment it writes them instead.
class StylePicturesTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { QApplication::setStyle("Fusion"); }
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void setsLookAsBefore_data() {
    QTest::addColumn<PanelSet>("set");
    QTest::addColumn<int>("lines");
    QTest::addColumn<AppLanguage>("language");
    QTest::addColumn<int>("scale");
    for (const PanelSet set : allPanelSets) {
      for (const int lines : {0, 2}) {
        for (const AppLanguage language : allAppLanguages) {
          for (const int scale : {1, 2}) {
            QTest::addRow("%s-%d-%s-%dx", qPrintable(rawValue(set)), lines,
                          qPrintable(rawValue(language)), scale)
                << set << lines << language << scale;
          }
        }
      }
    }
  }
  void setsLookAsBefore() {
    QFETCH(PanelSet, set);
    QFETCH(int, lines);
    QFETCH(AppLanguage, language);
    QFETCH(int, scale);
    Localization::shared().setLanguage(language);
    PanelStage stage([&](AppSettings& settings) {
      settings.setLanguage(language);
      settings.setFontSize(20);
      settings.setPanelSet(set);
      settings.setCaptionLines(lines);
    });
    DesktopCapabilities can;
    can.compositing = true;
    stage.desktop.setCapabilities(can);
    stage.panel().setAttribute(Qt::WA_DontShowOnScreen);
    stage.panel().resize(kPanel);
    stage.controller->show();
    const bool isKorean = language == AppLanguage::korean;
    stage.translation.translate = [isKorean](const QString&) {
      return isKorean ? QStringLiteral("그날 아침 바다는 잔잔했습니다.")
                      : QStringLiteral("La mer était calme ce matin-là.");
    };
    stage.settings.setTargetID(isKorean ? "ko" : "fr");
    stage.settings.setTranslate(true);
    stage.start();
    stage.final("Nobody expected the storm.");
    stage.final("The sea was calm that morning.");
    settle();
    const QImage shown = pictureOf(stage.panel(), scale);
    const QString file =
        QStringLiteral(VELUN_TEST_DATA "/pictures/%1.png").arg(QTest::currentDataTag());
    if (qEnvironmentVariableIsSet("VELUN_WRITE_PICTURES")) {
      QDir().mkpath(VELUN_TEST_DATA "/pictures");
      QVERIFY(shown.save(file));
      return;
    }
    const QImage expected(file);
    QVERIFY2(!expected.isNull(), qPrintable(file));
    QVERIFY(std::abs(expected.height() - shown.height()) <= 8 * scale);
    const auto [most, mean] = difference(shown, expected);
    QVERIFY2(most <= kMaxDifference && mean <= kMaxMeanDifference,
             qPrintable(QStringLiteral("at most %1, mean %2").arg(most).arg(mean)));
  }

  void anotherSetIsFarAway() {
    if (qEnvironmentVariableIsSet("VELUN_WRITE_PICTURES")) return;
    const auto picture = [](const char* name) {
      return QImage(QStringLiteral(VELUN_TEST_DATA "/pictures/%1.png").arg(name));
    };
    for (const char* other :
         {"yellowOnBlack-0-en-1x", "subtitle-0-en-1x", "blackOnWhite-0-en-1x"}) {
      const auto [most, mean] = difference(picture("calm-0-en-1x"), picture(other));
      QVERIFY2(most > kMaxDifference || mean > kMaxMeanDifference, other);
    }
  }
};

QTEST_MAIN(StylePicturesTest)
#include "style_pictures_test.moc"
