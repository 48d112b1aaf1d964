// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/symbol.h"

#include "support/suite.h"

#include <QImage>
#include <QPalette>

using namespace velun;

class SymbolTest final : public test::Suite {
  Q_OBJECT

 private:
  /// The colour of the most opaque pixel.
  static QColor inkOf(const QPixmap& pixmap) {
    const QImage image = pixmap.toImage();
    QColor ink(Qt::transparent);
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        const QColor color = image.pixelColor(x, y);
        if (color.alpha() > ink.alpha()) ink = color;
      }
    }
    return ink;
  }

 private Q_SLOTS:
  void everyUsedSymbolExists_data() {
    QTest::addColumn<QString>("name");
    for (const char* name : {"arrow.down",
                             "checkmark",
                             "checkmark.circle",
                             "chevron.down",
                             "chevron.up",
                             "doc.on.doc",
                             "ellipsis.circle",
                             "exclamationmark.triangle",
                             "eye.slash",
                             "folder",
                             "gearshape",
                             "globe",
                             "magnifyingglass",
                             "mic.fill",
                             "pause.fill",
                             "pin",
                             "play.fill",
                             "sidebar.left",
                             "speaker.wave.2.fill",
                             "square.and.arrow.down",
                             "square.and.arrow.up",
                             "text.bubble",
                             "textformat",
                             "translate",
                             "trash",
                             "xmark"}) {
      QTest::newRow(name) << name;
    }
  }
  void everyUsedSymbolExists() {
    QFETCH(QString, name);
    const QPixmap pixmap = symbolPixmap(name, 18, Qt::white, 2);
    QCOMPARE(pixmap.size(), QSize(36, 36));
    const QColor ink = inkOf(pixmap);
    QVERIFY(ink.alpha() > 200);
    QCOMPARE(ink.rgb() & 0xffffff, 0xffffffU);
  }

  void symbolsFollowTheTextColour() {
    const QIcon icon = symbolIcon("play.fill");
    QPalette palette = QGuiApplication::palette();
    for (const QColor color : {QColor(10, 20, 30), QColor(240, 241, 242)}) {
      palette.setColor(QPalette::ButtonText, color);
      QGuiApplication::setPalette(palette);
      QCOMPARE(inkOf(icon.pixmap(24, 24)).rgb(), color.rgb());
    }
  }

  void disabledSymbolsAreFaint() {
    const QIcon icon = symbolIcon("play.fill", Qt::white);
    const int faint = inkOf(icon.pixmap(QSize(24, 24), QIcon::Disabled)).alpha();
    QVERIFY(faint > 60 && faint < 110);
  }
};

QTEST_MAIN(SymbolTest)
#include "symbol_test.moc"
