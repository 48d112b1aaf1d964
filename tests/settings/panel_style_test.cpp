// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/panel_style.h"

#include "language/localization.h"
#include "settings/app_settings.h"
#include "support/memory_preferences.h"
#include "support/suite.h"

#include <QSignalSpy>

using namespace velun;

namespace {

PanelStyle unusualStyle() {
  PanelStyle style;
  style.fontFamily = "DejaVu Serif";
  style.fontWeight = 700;
  style.lineSpacing = 0.5;
  style.text = QColor(1, 2, 3);
  style.edge = TextEdge::shadow;
  style.background = QColor(250, 251, 252);
  style.opacity = 0.25;
  style.corner = 8;
  style.translation = QColor(9, 8, 7);
  style.translationRatio = 0.8;
  style.order = VoiceOrder::translationFirst;
  return style;
}

}  // namespace

class PanelStyleTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void aStyleIsReadAsItWasWritten_data() {
    QTest::addColumn<PanelSet>("set");
    for (const PanelSet set : allPanelSets) QTest::newRow(qPrintable(rawValue(set))) << set;
  }
  void aStyleIsReadAsItWasWritten() {
    QFETCH(PanelSet, set);
    const PanelStyle standard = standardStyle(set);
    QCOMPARE(encodeStyle(standard, standard), QString());
    QCOMPARE(decodeStyle({}, standard), standard);
    for (const PanelStyle& style : {unusualStyle(), PanelStyle()}) {
      QCOMPARE(decodeStyle(encodeStyle(style, standard), standard), style);
    }
    QCOMPARE(panelSetFromRawValue(rawValue(set)), std::optional(set));
    Localization::shared().setLanguage(AppLanguage::korean);
    QVERIFY(title(set).contains(QRegularExpression("[가-힣]")));
  }

  void onlyTheChangesAreWritten() {
    PanelStyle style = standardStyle(PanelSet::subtitle);
    style.corner = 4;
    QCOMPARE(encodeStyle(style, standardStyle(PanelSet::subtitle)), QString("{\"corner\":4}"));
  }

  void badValuesAreIgnored_data() {
    QTest::addColumn<QString>("text");
    for (const char* text :
         {"", "[", "[1]", "7", "{\"corner\":900}", "{\"corner\":\"wide\"}", "{\"corner\":-1}",
          "{\"textColor\":\"#12\"}", "{\"textColor\":\"red\"}", "{\"textColor\":\"#80ffffff\"}",
          "{\"opacity\":2}", "{\"opacity\":\"none\"}", "{\"edge\":\"glow\"}", "{\"order\":3}",
          "{\"fontWeight\":-4}", "{\"lineSpacing\":1e300}", "{\"translationRatio\":0}",
          "{\"fontFamily\":[]}", "{\"unknown\":true}"}) {
      QTest::newRow(text) << QString(text);
    }
  }
  void badValuesAreIgnored() {
    QFETCH(QString, text);
    for (const PanelSet set : allPanelSets) {
      QCOMPARE(decodeStyle(text, standardStyle(set)), standardStyle(set));
    }
  }

  void everySetCanBeRead() {
    for (const PanelSet set : allPanelSets) {
      const PanelStyle style = standardStyle(set);
      const QColor under = style.edge == TextEdge::outline ? QColor(Qt::black) : style.background;
      QVERIFY2(contrastRatio(style.text, under) >= 7, qPrintable(rawValue(set)));
      if (style.translation) QVERIFY(contrastRatio(*style.translation, under) >= 7);
    }
  }

  void contrastFollowsTheFormula() {
    QCOMPARE(contrastRatio(Qt::black, Qt::white), 21.0);
    QCOMPARE(contrastRatio(Qt::red, Qt::red), 1.0);
    QVERIFY(qAbs(contrastRatio(QColor(0x77, 0x77, 0x77), Qt::white) - 4.48) < 0.01);
  }

  void eachSetKeepsItsChanges() {
    test::MemoryPreferences store;
    {
      AppSettings settings(&store);
      QCOMPARE(settings.panelSet(), PanelSet::calm);
      QCOMPARE(settings.panelStyle(), PanelStyle());
      QSignalSpy changed(&settings, &AppSettings::panelStyleChanged);
      settings.setPanelSet(PanelSet::subtitle);
      PanelStyle style = settings.panelStyle();
      style.corner = 3;
      settings.setPanelStyle(style);
      settings.setPanelSet(PanelSet::calm);
      QCOMPARE(changed.count(), 3);
      QCOMPARE(settings.panelStyle(), PanelStyle());
    }
    AppSettings again(&store);
    again.setPanelSet(PanelSet::subtitle);
    QCOMPARE(again.panelStyle().corner, 3);
    again.setPanelStyle(standardStyle(PanelSet::subtitle));
    QCOMPARE(store.get<QString>("panelStyle.subtitle"), std::optional(QString()));
    QCOMPARE(AppSettings(&store).panelStyle(), standardStyle(PanelSet::subtitle));
  }

  void linesAreLimited() {
    test::MemoryPreferences store;
    store.values["captionLines"] = 40.0;
    store.values["panelSet"] = QString("nothing");
    AppSettings settings(&store);
    QCOMPARE(settings.captionLines(), 6);
    QCOMPARE(settings.panelSet(), PanelSet::calm);
    settings.setCaptionLines(-3);
    QCOMPARE(store.get<double>("captionLines"), std::optional(0.0));
  }
};

QTEST_GUILESS_MAIN(PanelStyleTest)
#include "panel_style_test.moc"
