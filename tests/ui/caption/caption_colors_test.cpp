// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/caption_colors.h"

#include "support/suite.h"
#include "ui/caption/caption_header_view.h"
#include "ui/caption/caption_menu.h"
#include "ui/caption/copy_transcript_button.h"
#include "ui/caption/header_button.h"
#include "ui/caption/header_state.h"
#include "ui/caption/panel_stage.h"
#include "ui/common/contrast_ratio.h"
#include "ui/common/language_popup.h"

using namespace velun;
using test::PanelStage;

class CaptionColorsTest final : public test::Suite {
  Q_OBJECT

 private:
  /// A translucent panel.
  struct Stage : PanelStage {
    Stage() {
      DesktopCapabilities can;
      can.compositing = true;
      desktop.setCapabilities(can);
      controller->setHeader(true, false);
    }
    /// Draws the panel without its children.
    QImage painted() const {
      QImage image(panel().size(), QImage::Format_ARGB32);
      image.fill(Qt::transparent);
      panel().render(&image, QPoint(), QRegion(), {});
      return image;
    }
  };

 private Q_SLOTS:
  void ordinaryColoursReachTheContrastForText() {
    // The worst background for the panel: white, blurred.
    const CaptionColors colors;
    const int mixed = qRound(colors.panel.red() * 0.78 + 255 * 0.22);
    const QColor behind(mixed, mixed, mixed);
    QVERIFY(test::contrastRatio(CaptionAppearance::text, behind) >= 4.5);
    QVERIFY(test::contrastRatio(CaptionAppearance::secondaryText, behind) >= 4.5);
    QVERIFY(test::contrastRatio(CaptionAppearance::symbol, behind) >= 4.5);
    QVERIFY(test::contrastRatio(CaptionAppearance::accent, behind) >= 3);
    QVERIFY(test::contrastRatio(CaptionAppearance::text, colors.menuSelection) >= 4.5);
  }

  void higherContrastReachesSevenForTextAndThreeForOutlines() {
    const CaptionColors colors = CaptionColors::highContrast();
    for (const QColor& surface : {colors.panel, colors.raised, colors.raisedHover, colors.menu}) {
      QCOMPARE(surface.alpha(), 255);
      QVERIFY(test::contrastRatio(CaptionAppearance::symbol, surface) >= 7);
    }
    QVERIFY(test::contrastRatio(CaptionAppearance::secondaryText, colors.panel) >= 7);
    QVERIFY(test::contrastRatio(CaptionAppearance::text, colors.menuSelection) >= 7);
    QVERIFY(test::contrastRatio(CaptionAppearance::accent, colors.panel) >= 3);
    for (const QColor& line : {colors.edge, colors.hairline, colors.buttonEdge, colors.menuEdge,
                               colors.menuSelectionEdge}) {
      QVERIFY(test::contrastRatio(line, colors.panel) >= 3);
    }
  }

  void higherContrastMakesThePanelOpaque() {
    Stage stage;
    const QPoint inside(stage.panel().width() / 2, 150);
    QCOMPARE(stage.painted().pixelColor(inside).alpha(), 230);
    stage.desktop.setHighContrast(true);
    QCOMPARE(stage.painted().pixelColor(inside), QColor(Qt::black));
    const QColor edge = stage.painted().pixelColor(0, 150);
    QVERIFY(test::contrastRatio(edge, Qt::black) >= 3);
    stage.desktop.setHighContrast(false);
    QCOMPARE(stage.painted().pixelColor(inside).alpha(), 230);
  }

  void higherContrastOutlinesButtons() {
    Stage stage;
    HeaderButton& button = stage.view->header().hideButton();
    const auto side = [&button] {
      QImage image(button.size(), QImage::Format_ARGB32);
      image.fill(Qt::transparent);
      button.render(&image, QPoint(), QRegion(), {});
      return image.pixelColor(0, image.height() / 2).alpha();
    };
    QCOMPARE(side(), 0);
    stage.desktop.setHighContrast(true);
    QVERIFY(side() > 128);
    stage.desktop.setHighContrast(false);
    QCOMPARE(side(), 0);
  }

  void copyButtonFocusRingIsVisible() {
    Stage stage;
    stage.final("One.");
    stage.controller->show();
    stage.panel().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&stage.panel()));
    stage.controller->setHeader(true, false);
    CopyTranscriptButton& button = stage.view->header().state().copyButton();
    const auto side = [&button] {
      QImage image(button.size(), QImage::Format_ARGB32);
      image.fill(Qt::transparent);
      button.render(&image, QPoint(), QRegion(), {});
      return image.pixelColor(1, image.height() / 2);
    };
    QVERIFY(test::contrastRatio(side(), CaptionColors().panel) < 3);
    button.setFocus(Qt::TabFocusReason);
    for (const CaptionColors& colors : {CaptionColors(), CaptionColors::highContrast()}) {
      QVERIFY(test::contrastRatio(side(), colors.panel) >= 3);
    }
  }

  void menusOfALaterPanelFollowTheContrast() {
    test::FakeDesktopPlatform desktop;
    desktop.isHighContrast = true;
    PanelStage stage({}, &desktop);
    CaptionMenu& menu = stage.view->header().translationMenu();
    Q_EMIT menu.aboutToShow();
    LanguagePopup& languages = stage.view->header().languagePopup();
    for (QWidget* each : std::initializer_list<QWidget*>{&menu, &languages}) {
      each->ensurePolished();
      each->adjustSize();
      const QImage image = each->grab().toImage();
      QCOMPARE(image.pixelColor(image.width() / 2, 0), QColor(Qt::white));
      QCOMPARE(image.pixelColor(image.width() / 2, 3), QColor(Qt::black));
    }
  }

  void menusAreRectanglesWithoutACompositor() {
    PanelStage stage;
    stage.view->setCapabilities({});
    CaptionMenu& menu = stage.view->header().translationMenu();
    Q_EMIT menu.aboutToShow();
    menu.ensurePolished();
    menu.adjustSize();
    QCOMPARE(menu.grab().toImage().pixelColor(1, 1).alpha(), 255);
  }
};

QTEST_MAIN(CaptionColorsTest)
#include "caption_colors_test.moc"
