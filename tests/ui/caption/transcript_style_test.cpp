// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/settle.h"
#include "support/suite.h"
#include "ui/caption/panel_stage.h"
#include "ui/caption/panel_surface.h"
#include "ui/caption/selectable_transcript_text_view.h"
#include "ui/caption/text_halo.h"
#include "ui/caption/transcript_formats.h"
#include "ui/caption/transcript_samples.h"
#include "ui/caption/transcript_view.h"

#include <QPainter>

using namespace velun;
using test::lineOf;
using test::SeenDocument;
using test::settle;

namespace {

struct Stage {
  explicit Stage(int lines = 3) {
    for (int i = 0; i < lines; ++i) {
      session.lines.push_back(lineOf(QStringLiteral("Line %1 of many.").arg(i), {{"ko", "한 줄"}}));
    }
    inputs.session = &session;
    inputs.followsLatest = true;
    inputs.captionStyle = true;
    view.resize(400, 200);
    view.show();
    view.update(inputs);
    settle();
  }
  QImage painted() const {
    QImage image(view.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    view.textView().viewport()->render(&image, QPoint(), QRegion(), {});
    return image;
  }
  QString text() const { return view.textView().document()->toPlainText(); }

  CaptionSession session;
  TranscriptInputs inputs;
  TranscriptView view;
};

/// How many pixels are opaque and nearly of this colour.
int count(const QImage& image, const QColor& color) {
  int found = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      const QColor pixel = image.pixelColor(x, y);
      const bool same = std::abs(pixel.red() - color.red()) < 8 &&
                        std::abs(pixel.green() - color.green()) < 8 &&
                        std::abs(pixel.blue() - color.blue()) < 8;
      found += pixel.alpha() > 240 && same;
    }
  }
  return found;
}

}  // namespace

/// The style of the panel's text.
class TranscriptStyleTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void outlineSurroundsTheLettersWithTheOtherExtreme() {
    Stage stage;
    QCOMPARE(count(stage.painted(), Qt::black), 0);
    stage.inputs.style.edge = TextEdge::outline;
    stage.view.update(stage.inputs);
    QVERIFY(count(stage.painted(), Qt::black) > 200);
    stage.inputs.style.text = Qt::black;
    stage.view.update(stage.inputs);
    QVERIFY(count(stage.painted(), Qt::white) > 200);
  }

  void shadowIsSoft() {
    Stage stage;
    stage.inputs.style.edge = TextEdge::shadow;
    stage.view.update(stage.inputs);
    const QImage shadow = stage.painted();
    int translucent = 0;
    for (int x = 0; x < shadow.width(); ++x) {
      for (int y = 0; y < shadow.height(); ++y) {
        const QColor pixel = shadow.pixelColor(x, y);
        translucent += pixel.alpha() > 0 && pixel.alpha() < 128 && pixel.lightness() < 40;
      }
    }
    QVERIFY(translucent > 500);
  }

  void everyStyleOfALongTextIsEventuallyThatOfAFreshOne() {
    Stage stage(1500);
    PanelStyle& style = stage.inputs.style;
    style.lineSpacing = 0.4;
    style.fontWeight = 700;
    style.translation = QColor(Qt::yellow);
    style.translationRatio = 1.5;
    stage.view.update(stage.inputs);
    // Before everything is formatted.
    stage.session.lines.push_back(lineOf("New."));
    stage.session.lines[700].translations["ko"] = "바뀜";
    stage.view.update(stage.inputs, {.lines = TranscriptChange::Lines::one, .index = 700});
    TranscriptView fresh;
    fresh.update(stage.inputs);
    const SeenDocument whole(*fresh.textView().document());
    QTRY_VERIFY(SeenDocument(*stage.view.textView().document()) == whole);
  }

  void visibleTextHasItsStyleAtOnce() {
    Stage stage(1500);
    stage.inputs.style.text = QColor(Qt::green);
    stage.view.update(stage.inputs);
    const QTextCursor cursor = stage.view.textView().cursorForPosition(QPoint(40, 190));
    QCOMPARE(cursor.charFormat().foreground().color().green(), 255);
    QCOMPARE(cursor.charFormat().foreground().color().red(), 0);
    QVERIFY(count(stage.painted(), Qt::green) > 50);
  }

  void translationMayComeFirst() {
    Stage stage(1);
    QCOMPARE(stage.text(), QString("Line 0 of many.\n한 줄"));
    stage.inputs.style.order = VoiceOrder::translationFirst;
    stage.view.update(stage.inputs);
    QCOMPARE(stage.text(), QString("한 줄\nLine 0 of many."));
    stage.inputs.captionStyle = false;
    stage.view.update(stage.inputs);
    QCOMPARE(stage.text(), QString("Line 0 of many.\n한 줄"));
  }

  void translationIsASecondVoice() {
    TranscriptInputs inputs;
    inputs.captionStyle = true;
    inputs.fontSize = 20;
    inputs.style.translation = QColor(Qt::cyan);
    inputs.style.translationRatio = 0.5;
    const TranscriptFormats formats(inputs, QPalette());
    const QTextCharFormat voice = formats.charFormat(TranscriptStyle::translation);
    QCOMPARE(voice.foreground().color(), QColor(Qt::cyan));
    QCOMPARE(voice.fontPointSize(), 7.5);
    QCOMPARE(formats.charFormat(TranscriptStyle::body).fontPointSize(), 15.0);
  }

  void panelShowsTheStyleAtOnce() {
    test::PanelStage stage;
    DesktopCapabilities can;
    can.compositing = true;
    stage.desktop.setCapabilities(can);
    const auto painted = [&stage] {
      QImage image(stage.panel().size(), QImage::Format_ARGB32);
      image.fill(Qt::transparent);
      stage.panel().render(&image, QPoint(), QRegion(), {});
      return image;
    };
    const QPoint inside(stage.panel().width() / 2, 150);
    stage.settings.setPanelSet(PanelSet::blackOnWhite);
    QCOMPARE(painted().pixelColor(inside), QColor(Qt::white));
    stage.settings.setPanelSet(PanelSet::subtitle);
    QCOMPARE(painted().pixelColor(inside).alpha(), 0);
    QCOMPARE(painted().pixelColor(0, 150).alpha(), 0);
    stage.desktop.setHighContrast(true);
    QCOMPARE(painted().pixelColor(inside), QColor(Qt::black));
    stage.settings.setFollowsHighContrast(false);
    QCOMPARE(painted().pixelColor(inside).alpha(), 0);
    PanelStyle square = stage.settings.panelStyle();
    square.opacity = 0.5;
    square.corner = 0;
    stage.settings.setPanelStyle(square);
    QCOMPARE(painted().pixelColor(2, 2).alpha(), 128);
  }

  void controlsHaveASurfaceWhereTheBackgroundIsTooLight() {
    for (const PanelSet set : allPanelSets) {
      const bool light = set == PanelSet::blackOnWhite || set == PanelSet::subtitle;
      QCOMPARE(needsControlSurface(standardStyle(set)), light);
      QVERIFY(lowestContrast(standardStyle(set)) >= 4.5);
    }
    PanelStyle faint;
    faint.text = QColor(90, 90, 90);
    QVERIFY(lowestContrast(faint) < 4.5);
    PanelStyle seeThrough;
    seeThrough.opacity = 0.2;
    QVERIFY(lowestContrast(seeThrough) < 4.5);
    seeThrough.edge = TextEdge::outline;
    QVERIFY(lowestContrast(seeThrough) >= 4.5);
  }
};

QTEST_MAIN(TranscriptStyleTest)
#include "transcript_style_test.moc"
