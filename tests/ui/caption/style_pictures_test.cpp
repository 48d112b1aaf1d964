// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/localization.h"
#include "support/picture_difference.h"
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
constexpr QSize kGrid(30, 15);

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

}  // namespace

/// Every ready set as the panel shows it, and high contrast, in both languages and at two scales,
/// against pictures that somebody has looked at. With VELUN_WRITE_PICTURES in the environment it
/// writes them instead.
class StylePicturesTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { QApplication::setStyle("Fusion"); }
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void setsLookAsBefore_data() {
    QTest::addColumn<PanelSet>("set");
    QTest::addColumn<int>("lines");
    QTest::addColumn<AppLanguage>("language");
    QTest::addColumn<bool>("isHighContrast");
    for (const PanelSet set : allPanelSets) {
      for (const int lines : {0, 2}) {
        for (const AppLanguage language : allAppLanguages) {
          QTest::addRow("%s-%d-%s", qPrintable(rawValue(set)), lines,
                        qPrintable(rawValue(language)))
              << set << lines << language << false;
        }
      }
    }
    for (const AppLanguage language : allAppLanguages) {
      QTest::addRow("contrast-0-%s", qPrintable(rawValue(language)))
          << PanelSet::clearOnDark << 0 << language << true;
    }
  }
  void setsLookAsBefore() {
    QFETCH(PanelSet, set);
    QFETCH(int, lines);
    QFETCH(AppLanguage, language);
    QFETCH(bool, isHighContrast);
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
    stage.desktop.setHighContrast(isHighContrast);
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
    for (const int scale : {1, 2}) compare(pictureOf(stage.panel(), scale), scale);
  }

  void anotherSetIsFarAway() {
    if (qEnvironmentVariableIsSet("VELUN_WRITE_PICTURES")) return;
    const auto picture = [](const char* name) {
      return QImage(QStringLiteral(VELUN_TEST_DATA "/pictures/%1.png").arg(name));
    };
    for (const char* other :
         {"yellowOnBlack-0-en", "subtitle-0-en", "blackOnWhite-0-en", "contrast-0-en"}) {
      const auto difference = test::differenceOf(picture("calm-0-en"), picture(other), kGrid);
      QVERIFY2(!difference.isTolerable(), other);
    }
  }

 private:
  /// There is one picture for all scales.
  static void compare(const QImage& shown, int scale) {
    const QString file =
        QStringLiteral(VELUN_TEST_DATA "/pictures/%1.png").arg(QTest::currentDataTag());
    if (qEnvironmentVariableIsSet("VELUN_WRITE_PICTURES")) {
      QDir().mkpath(VELUN_TEST_DATA "/pictures");
      if (scale == 1) QVERIFY(shown.save(file));
      return;
    }
    const QImage expected(file);
    QVERIFY2(!expected.isNull(), qPrintable(file));
    QVERIFY(std::abs(expected.height() - shown.height() / scale) <= 8);
    const auto difference = test::differenceOf(shown, expected, kGrid);
    QVERIFY2(difference.isTolerable(),
             qPrintable(QStringLiteral("at scale %1: %2").arg(scale).arg(difference.text())));
  }
};

QTEST_MAIN(StylePicturesTest)
#include "style_pictures_test.moc"
