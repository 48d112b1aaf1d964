// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/window_look.h"

#include "support/suite.h"
#include "ui/common/contrast_ratio.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStyleFactory>
#include <QVBoxLayout>

using namespace velun;
using test::contrastRatio;

namespace {

using Role = QPalette::ColorRole;

/// Texts and the surfaces that they are on.
constexpr std::pair<Role, Role> kPairs[] = {{QPalette::WindowText, QPalette::Window},
                                            {QPalette::Text, QPalette::Base},
                                            {QPalette::ButtonText, QPalette::Button},
                                            {QPalette::HighlightedText, QPalette::Highlight},
                                            {QPalette::ToolTipText, QPalette::ToolTipBase},
                                            {QPalette::Link, QPalette::Window}};

void verifyContrast(const QPalette& palette, Role text, Role surface, double least) {
  for (const auto group : {QPalette::Active, QPalette::Inactive}) {
    const double ratio = contrastRatio(palette.color(group, text), palette.color(group, surface));
    QVERIFY2(ratio >= least, qPrintable(QStringLiteral("%1: %2").arg(text).arg(ratio)));
  }
}

}  // namespace

class WindowLookTest final : public test::Suite {
  Q_OBJECT

 private:
  static QPalette desktops(bool dark) {
    return dark ? QPalette(QColor(45, 45, 48), QColor(37, 37, 40))
                : QPalette(QColor(239, 239, 239));
  }

  /// The strongest contrast to the window among the outermost pixels at the middle of a side.
  static double outlineOf(QWidget& control) {
    const QImage image = control.grab().toImage();
    const QColor window = control.palette().color(QPalette::Window);
    double strongest = 1;
    for (int x = 0; x < 3; ++x) {
      strongest =
          std::max(strongest, contrastRatio(image.pixelColor(x, image.height() / 2), window));
    }
    return strongest;
  }

 private Q_SLOTS:
  void init() { QApplication::setStyle(QStyleFactory::create("Fusion")); }
  void cleanup() { QApplication::setPalette(QPalette()); }

  void contrastRatiosMatchTheGuidelines() {
    QCOMPARE(contrastRatio(Qt::black, Qt::white), 21.0);
    QCOMPARE(contrastRatio(Qt::white, Qt::white), 1.0);
    QVERIFY(std::abs(contrastRatio(QColor("#767676"), Qt::white) - 4.54) < 0.01);
    QVERIFY(std::abs(contrastRatio(QColor(0, 0, 0, 128), Qt::white) - 3.98) < 0.05);
  }

  void everyTextHasSevenToOneContrast_data() {
    QTest::addColumn<bool>("dark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
  }
  void everyTextHasSevenToOneContrast() {
    QFETCH(bool, dark);
    const QPalette palette = highContrastPalette(dark);
    QCOMPARE(palette.color(QPalette::Window).lightness() < 128, dark);
    for (const auto& [text, surface] : kPairs) verifyContrast(palette, text, surface, 7);
    verifyContrast(palette, QPalette::PlaceholderText, QPalette::Base, 7);
    QColor dimmed = palette.color(QPalette::Text);
    dimmed.setAlphaF(0.7F);
    QVERIFY(contrastRatio(dimmed, palette.color(QPalette::Base)) >= 7);
    QVERIFY(contrastRatio(palette.color(QPalette::Highlight), palette.color(QPalette::Base)) >= 3);
  }

  void schemesHaveReadableText_data() { everyTextHasSevenToOneContrast_data(); }
  void schemesHaveReadableText() {
    QFETCH(bool, dark);
    const QPalette palette = schemePalette(dark);
    QCOMPARE(palette.color(QPalette::Window).lightness() < 128, dark);
    for (const auto& [text, surface] : kPairs) {
      verifyContrast(palette, text, surface, text == QPalette::HighlightedText ? 4.5 : 7);
    }
    verifyContrast(palette, QPalette::PlaceholderText, QPalette::Base, 4.5);
  }

  void preferredSchemeIsFollowedAtOnce() {
    const auto window = [] {
      return QApplication::palette().color(QPalette::Window);
    };
    const QColor before = window();
    WindowLook look;
    look.set(ColorScheme::light, false, false);
    QCOMPARE(window(), before);
    look.set(ColorScheme::dark, false, false);
    QCOMPARE(window(), schemePalette(true).color(QPalette::Window));
    look.set(ColorScheme::any, false, false);
    QCOMPARE(window(), before);
    look.set(ColorScheme::dark, false, false);
    look.set(ColorScheme::light, false, false);
    QCOMPARE(window(), before);
  }

  void preferredSchemeIsFollowedInHighContrastToo() {
    const auto window = [] {
      return QApplication::palette().color(QPalette::Window);
    };
    const QColor before = window();
    WindowLook look;
    look.set(ColorScheme::any, true, false);
    QCOMPARE(window(), QColor(Qt::white));
    look.set(ColorScheme::dark, true, false);
    QCOMPARE(window(), QColor(Qt::black));
    look.set(ColorScheme::light, true, false);
    QCOMPARE(window(), QColor(Qt::white));
    look.set(ColorScheme::dark, true, false);
    look.set(ColorScheme::dark, false, false);
    QCOMPARE(window(), schemePalette(true).color(QPalette::Window));
    look.set(ColorScheme::any, false, false);
    QCOMPARE(window(), before);
  }

  void controlsGainAndLoseOutlines_data() { everyTextHasSevenToOneContrast_data(); }
  void controlsGainAndLoseOutlines() {
    QFETCH(bool, dark);
    if (dark) QApplication::setPalette(desktops(true));
    QPushButton button("Export");
    QComboBox chooser;
    QLineEdit field;
    QCheckBox box;
    QPlainTextEdit lines;
    const std::vector<QWidget*> controls = {&button, &chooser, &field, &box, &lines};
    std::vector<QImage> before;
    for (QWidget* control : controls) {
      control->resize(control->sizeHint());
      before.push_back(control->grab().toImage());
      QVERIFY(outlineOf(*control) < 3);
    }
    WindowLook look;
    look.set(ColorScheme::any, true, false);
    for (QWidget* control : controls) {
      QVERIFY2(outlineOf(*control) >= 7, control->metaObject()->className());
    }
    look.set(ColorScheme::any, false, false);
    if (dark) QApplication::setPalette(desktops(true));
    for (std::size_t i = 0; i < controls.size(); ++i) {
      QCOMPARE(controls[i]->grab().toImage(), before[i]);
    }
  }

  void theFocusIsVisibleInEveryScheme_data() { everyTextHasSevenToOneContrast_data(); }
  void theFocusIsVisibleInEveryScheme() {
    QFETCH(bool, dark);
    WindowLook look;
    look.set(dark ? ColorScheme::dark : ColorScheme::light, false, false);
    QWidget window;
    auto* column = new QVBoxLayout(&window);
    auto* list = new QListWidget;
    list->addItems({"One", "Two"});
    list->setCurrentRow(0);
    const std::vector<QWidget*> controls = {new QPushButton("Export"), new QComboBox, new QLineEdit,
                                            new QCheckBox("Box"), list};
    for (QWidget* control : controls) column->addWidget(control);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    for (QWidget* control : controls) {
      controls[control == controls[0] ? 1 : 0]->setFocus();
      const QImage before = control->grab().toImage();
      control->setFocus();
      const QImage focused = control->grab().toImage();
      double strongest = 1;
      for (int y = 0; y < before.height(); ++y) {
        for (int x = 0; x < before.width(); ++x) {
          strongest =
              std::max(strongest, contrastRatio(focused.pixelColor(x, y), before.pixelColor(x, y)));
        }
      }
      QVERIFY2(strongest >= 3, control->metaObject()->className());
    }
  }

  void outlinesAreVisibleInTheDarkScheme() {
    QComboBox chooser;
    QLineEdit field;
    QCheckBox box;
    QPlainTextEdit lines;
    WindowLook look;
    look.set(ColorScheme::dark, false, false);
    for (QWidget* control : std::initializer_list<QWidget*>{&chooser, &field, &box, &lines}) {
      control->resize(control->sizeHint());
      QVERIFY2(outlineOf(*control) >= 3, control->metaObject()->className());
    }
    chooser.show();
    chooser.activateWindow();
    chooser.setFocus();
    QTRY_VERIFY(chooser.hasFocus());
    QVERIFY(outlineOf(chooser) >= 3);
  }

  void coloursThatTheDesktopDoesNotShowAreReplaced() {
    // Qt's theme for KDE gives these where the user has chosen none.
    QApplication::setPalette(QPalette(QColor(0xdf, 0xdc, 0xd9), QColor(0xd6, 0xd2, 0xd0)));
    WindowLook look;
    look.set(ColorScheme::any, false, false);
    QCOMPARE(QApplication::palette().color(QPalette::Window),
             schemePalette(false).color(QPalette::Window));
  }

  void reducedMotionStopsAnimations() {
    const auto duration = [] {
      return QApplication::style()->styleHint(QStyle::SH_Widget_Animation_Duration);
    };
    QPushButton button("Export");
    button.resize(button.sizeHint());
    const QImage before = button.grab().toImage();
    QVERIFY(duration() > 0);
    WindowLook look;
    look.set(ColorScheme::any, false, true);
    QCOMPARE(duration(), 0);
    QCOMPARE(button.grab().toImage(), before);
    look.set(ColorScheme::any, true, true);
    QCOMPARE(duration(), 0);
    look.set(ColorScheme::any, true, false);
    QVERIFY(duration() > 0);
    QVERIFY(button.grab().toImage() != before);
    look.set(ColorScheme::any, false, false);
    QVERIFY(duration() > 0);
    QCOMPARE(button.grab().toImage(), before);
  }
};

QTEST_MAIN(WindowLookTest)
#include "window_look_test.moc"
