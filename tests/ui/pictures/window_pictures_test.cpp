// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/localization.h"
#include "support/picture_difference.h"
#include "support/suite.h"
#include "ui/common/window_look.h"
#include "ui/pictures/shown_windows.h"

#include <algorithm>
#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QLabel>
#include <QPainter>

using namespace velun;

namespace {

struct Look {
  ColorScheme scheme;
  bool isHighContrast;
};
constexpr Look kLooks[] = {
    {ColorScheme::light, false}, {ColorScheme::dark, false}, {ColorScheme::light, true}};
constexpr int kLookCount = 3;
// Pictures are kept at half their size and in few colours, which is enough to look at.
constexpr int kKeptParts = 2;
/// The sides of the compared blocks, in pixels of the screen: about one letter.
constexpr int kBlock = 12;

/// A colour channel as the nearest of 33 levels.
int rounded(int channel) {
  constexpr int kStep = 8;
  return std::min(255, (channel + kStep / 2) / kStep * kStep);
}

/// Makes a much smaller file.
QImage inFewColors(const QImage& picture) {
  QImage changed = picture.convertToFormat(QImage::Format_RGB32);
  for (int y = 0; y < changed.height(); ++y) {
    auto* line = reinterpret_cast<QRgb*>(changed.scanLine(y));
    for (int x = 0; x < changed.width(); ++x) {
      const QRgb color = line[x];
      line[x] = qRgb(rounded(qRed(color)), rounded(qGreen(color)), rounded(qBlue(color)));
    }
  }
  return changed;
}

/// A window in all looks, from left to right, as its file has them.
class KeptPicture {
 public:
  explicit KeptPicture(const QByteArray& name)
      : file_(QStringLiteral(VELUN_TEST_DATA "/%1.png").arg(QString::fromUtf8(name))) {}

  QImage look(int index) const {
    const QImage all(file_);
    const int width = all.width() / kLookCount;
    return all.copy(index * width, 0, width, all.height());
  }

  void write(const QList<QImage>& looks) const {
    const QSize size = looks.front().size() / kKeptParts;
    QImage all(size.width() * kLookCount, size.height(), QImage::Format_RGB32);
    QPainter painter(&all);
    for (int i = 0; i < kLookCount; ++i) {
      painter.drawImage(i * size.width(), 0,
                        looks[i].scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    }
    painter.end();
    QVERIFY(QDir().mkpath(VELUN_TEST_DATA));
    QVERIFY(inFewColors(all).save(file_));
  }

 private:
  QString file_;
};

test::PictureDifference differenceOf(const QImage& shown, const QImage& kept) {
  const QSize size = shown.deviceIndependentSize().toSize();
  return test::differenceOf(shown, kept, size / kBlock);
}

bool isWriting() {
  return qEnvironmentVariableIsSet("VELUN_WRITE_PICTURES");
}

}  // namespace

/// Every window but the panel in light, dark and high-contrast colours, in both languages and at
/// two scales, against pictures that somebody has looked at. With VELUN_WRITE_PICTURES in the
/// environment it writes them instead.
class WindowPicturesTest final : public test::Suite {
  Q_OBJECT

  WindowLook look_;

  void setLook(int index) { look_.set(kLooks[index].scheme, kLooks[index].isHighContrast, true); }

 private Q_SLOTS:
  void initTestCase() {
    QApplication::setStyle("Fusion");
    QApplication::setCursorFlashTime(0);
  }
  void cleanup() {
    setLook(0);
    Localization::shared().setLanguage(AppLanguage::english);
  }

  void windowsLookAsBefore_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<AppLanguage>("language");
    for (const QString& name : test::ShownWindows::names()) {
      for (const AppLanguage language : allAppLanguages) {
        QTest::addRow("%s-%s", qPrintable(name), qPrintable(rawValue(language)))
            << name << language;
      }
    }
  }
  void windowsLookAsBefore() {
    QFETCH(QString, name);
    QFETCH(AppLanguage, language);
    const KeptPicture kept(QTest::currentDataTag());
    test::ShownWindows windows(language);
    QWidget& window = windows.show(name);
    QList<QImage> shown;
    for (int index = 0; index < kLookCount; ++index) {
      setLook(index);
      for (const int scale : {1, 2}) {
        const QImage picture = test::pictureOf(window, scale);
        if (scale == 1) shown.append(picture);
        if (!isWriting()) {
          compare(picture, kept.look(index), QStringLiteral("%1-%2x").arg(index).arg(scale));
        }
      }
    }
    if (isWriting()) kept.write(shown);
  }

  void changesAreNoticed() {
    if (isWriting()) QSKIP("Pictures are being written.");
    test::ShownWindows windows(AppLanguage::english);
    QWidget& window = windows.show("general");
    setLook(0);
    const QImage kept = KeptPicture("general-en").look(0);
    QVERIFY(differenceOf(test::pictureOf(window, 1), kept).isTolerable());
    const auto toggles = window.findChildren<QCheckBox*>();
    QCheckBox* toggle = *std::ranges::find_if(toggles, &QWidget::isVisible);
    toggle->move(toggle->pos() + QPoint(24, 0));
    QVERIFY(!differenceOf(test::pictureOf(window, 1), kept).isTolerable());
    toggle->move(toggle->pos() - QPoint(24, 0));
    QPalette palette = QApplication::palette();
    palette.setColor(QPalette::Window, palette.color(QPalette::Window).darker(103));
    QApplication::setPalette(palette);
    QVERIFY(!differenceOf(test::pictureOf(window, 1), kept).isTolerable());
  }

 private:
  static void compare(const QImage& shown, const QImage& kept, const QString& variant) {
    QVERIFY2(!kept.isNull(), QTest::currentDataTag());
    const QSize larger = shown.deviceIndependentSize().toSize() - kept.size() * kKeptParts;
    const auto difference = differenceOf(shown, kept);
    const QString name = QStringLiteral("%1-%2").arg(QTest::currentDataTag(), variant);
    const bool isAlike = difference.isTolerable() && larger.width() <= 1 && larger.height() <= 1;
    if (!isAlike) shown.save(QDir::temp().filePath(name + ".png"));
    QVERIFY2(isAlike, qPrintable(name + ": " + difference.text()));
  }
};

QTEST_MAIN(WindowPicturesTest)
#include "window_pictures_test.moc"
