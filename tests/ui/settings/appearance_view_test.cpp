// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/appearance_view.h"

#include "support/memory_preferences.h"
#include "support/suite.h"
#include "ui/settings/style_preview.h"

#include <QImage>
#include <QSlider>

using namespace velun;

namespace {

/// The pixels that have nearly the colour red, in which the tests write.
int redPixels(QWidget& widget) {
  const QImage picture = widget.grab().toImage();
  int count = 0;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      const QColor color = picture.pixelColor(x, y);
      if (color.red() > 200 && color.green() < 80 && color.blue() < 80) ++count;
    }
  }
  return count;
}

struct Fixture {
  Fixture() {
    PanelStyle style = settings.panelStyle();
    style.text = Qt::red;
    style.translation = Qt::red;
    settings.setPanelStyle(style);
    preferences.writes = 0;
  }

  test::MemoryPreferences preferences;
  AppSettings settings{&preferences};
  AppearanceView view{settings};
};

}  // namespace

class AppearanceViewTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void thePreviewShowsItsTextAtEveryWidthAndSize() {
    Fixture f;
    auto* preview = f.view.findChild<StylePreview*>();
    f.view.resize(460, 760);
    f.view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&f.view));
    for (const int width : {460, 900, 420}) {
      f.view.resize(width, 760);
      QVERIFY2(redPixels(*preview) > 200, QByteArray::number(width));
    }
    for (const double size : {9, 30, 96}) {
      f.settings.setFontSize(size);
      QVERIFY2(redPixels(*preview) > 200, QByteArray::number(size));
    }
  }

  void aDragOfTheOpacityIsStoredAtItsEnd() {
    Fixture f;
    auto* slider = f.view.findChild<QSlider*>();
    auto* preview = f.view.findChild<StylePreview*>();
    const QImage before = preview->grab().toImage();
    slider->setSliderDown(true);
    for (const int percent : {80, 60, 40}) slider->setValue(percent);
    QCOMPARE(f.preferences.writes, 0);
    QVERIFY(preview->grab().toImage() != before);
    slider->setSliderDown(false);
    QCOMPARE(f.preferences.writes, 1);
    QCOMPARE(f.settings.panelStyle().opacity, std::optional(0.4));
    slider->setValue(50);  // as with the keyboard
    QCOMPARE(f.settings.panelStyle().opacity, std::optional(0.5));
  }
};

QTEST_MAIN(AppearanceViewTest)
#include "appearance_view_test.moc"
