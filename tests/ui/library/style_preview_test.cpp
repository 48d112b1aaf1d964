// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/style_preview.h"

#include "support/suite.h"

#include <QImage>

using namespace velun;

namespace {

/// The pixels that have nearly the colour of the text.
int textPixels(StylePreview& preview) {
  const QImage picture = preview.grab().toImage();
  int count = 0;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      const QColor color = picture.pixelColor(x, y);
      if (color.red() > 200 && color.green() < 80 && color.blue() < 80) ++count;
    }
  }
  return count;
}

}  // namespace

class StylePreviewTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void showsTextAtEveryWidthAndSize() {
    PanelStyle style;
    style.text = Qt::red;
    StylePreview preview;
    preview.setBackdrop(StylePreview::Backdrop::dark);
    // As in a form before its first layout.
    preview.resize(40, preview.height());
    preview.setStyle(style, 16);
    for (const int width : {420, 800, 300}) {
      preview.resize(width, preview.height());
      QVERIFY2(textPixels(preview) > 200, QByteArray::number(width));
    }
    preview.setStyle(style, 20);
    QVERIFY(textPixels(preview) > 200);
  }
};

QTEST_MAIN(StylePreviewTest)
#include "style_preview_test.moc"
