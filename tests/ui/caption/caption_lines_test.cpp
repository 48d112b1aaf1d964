// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/settle.h"
#include "support/suite.h"
#include "ui/caption/caption_empty_state.h"
#include "ui/caption/panel_edge.h"
#include "ui/caption/panel_stage.h"
#include "ui/caption/selectable_transcript_text_view.h"
#include "ui/caption/transcript_formats.h"
#include "ui/caption/transcript_layout.h"
#include "ui/caption/transcript_view.h"
#include "ui/common/window_frame.h"

#include <QScrollBar>
#include <QTextBlock>
#include <QWheelEvent>

using namespace velun;
using test::PanelStage;
using test::settle;

namespace {

struct Stage : PanelStage {
  explicit Stage(int lines) {
    panel().setAttribute(Qt::WA_DontShowOnScreen);
    settings.setCaptionLines(lines);
    controller->show();
    for (int i = 0; i < 40; ++i) final(QStringLiteral("Sentence number %1 of a talk.").arg(i));
    settle();
  }

  SelectableTranscriptTextView& text() const { return view->transcript().textView(); }
  QScrollBar& bar() const { return *text().verticalScrollBar(); }
  int pitch() const { return linePitch(settings.panelStyle(), settings.fontSize()); }
  /// The bottom of the last line in the view.
  int endOfText() const {
    const auto* layout = static_cast<const TranscriptLayout*>(text().document()->documentLayout());
    const QTextBlock last = text().document()->lastBlock();
    return layout->blockTop(last) + layout->blockHeight(last) - bar().value();
  }
  QImage painted() const {
    QImage image(text().viewport()->size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    text().viewport()->render(&image, QPoint(), QRegion(), {});
    return image;
  }
};

bool isEmpty(const QImage& image) {
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (qAlpha(image.pixel(x, y)) != 0) return false;
    }
  }
  return true;
}

void turnWheel(QWidget& over, int angle) {
  QWheelEvent event(QPointF(5, 5), over.mapToGlobal(QPointF(5, 5)), {}, QPoint(0, angle),
                    Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&over, &event);
}

}  // namespace

/// The panel made for a number of lines.
class CaptionLinesTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void panelIsAsHighAsItsLines_data() {
    QTest::addColumn<int>("lines");
    for (int lines = 1; lines <= AppSettings::maxCaptionLines; ++lines) {
      QTest::addRow("%d", lines) << lines;
    }
  }
  void panelIsAsHighAsItsLines() {
    QFETCH(int, lines);
    Stage stage(lines);
    const int height = lines * stage.pitch() + 2 * TranscriptLayout::verticalInset;
    QCOMPARE(stage.panel().height(), height);
    QCOMPARE(stage.text().viewport()->height(), height);
    QCOMPARE(stage.panel().minimumHeight(), height);
    QCOMPARE(stage.panel().maximumHeight(), height);
    // The newest line is whole, and so are the ones above it.
    QCOMPARE(stage.endOfText(), height - TranscriptLayout::verticalInset);
    QCOMPARE(stage.bar().value() % stage.pitch(), 0);
  }

  void longDraftsScrollByWholeLines() {
    Stage stage(2);
    const int bottom = stage.endOfText();
    QString draft = "So";
    for (int i = 0; i < 60; ++i) {
      draft += " they went on";
      stage.draft(draft);
      settle();
      QCOMPARE(stage.endOfText(), bottom);
      QCOMPARE(stage.bar().value() % stage.pitch(), 0);
    }
  }

  void finalTextStaysWhereItsDraftWas() {
    Stage stage(3);
    const QString text = "They began with the drainage, which nobody had seen for many years.";
    stage.draft(text);
    settle();
    const QImage before = stage.painted();
    stage.final(text);
    settle();
    QCOMPARE(stage.painted(), before);
  }

  void lineThatTheTopCutsIsTransparent() {
    Stage stage(2);
    const QImage all = stage.painted();
    QVERIFY(isEmpty(all.copy(0, 0, all.width(), TranscriptLayout::verticalInset)));
    QVERIFY(!isEmpty(all));
  }

  void panelOfAnyHeightHidesALineThatItsTopCuts_data() {
    QTest::addColumn<PanelSet>("set");
    QTest::newRow("plain letters") << PanelSet::calm;
    QTest::newRow("outlined letters") << PanelSet::subtitle;
  }
  void panelOfAnyHeightHidesALineThatItsTopCuts() {
    QFETCH(PanelSet, set);
    Stage stage(0);
    stage.settings.setPanelSet(set);
    stage.panel().resize(stage.panel().width(), 200);
    settle();
    const int end = stage.bar().maximum();
    for (int above = 0; above < 2 * stage.pitch(); ++above) {
      stage.bar().setValue(end - above);
      const QImage painted = stage.painted();
      QVERIFY2(isEmpty(painted.copy(0, 0, painted.width(), 1)), qPrintable(QString::number(above)));
      QVERIFY(!isEmpty(painted.copy(0, stage.pitch(), painted.width(), stage.pitch())));
    }
  }

  void panelWithRoomForOneLineShowsAPartOfAnother() {
    Stage stage(0);
    stage.settings.setFontSize(96);
    stage.panel().resize(stage.panel().width(), CaptionAppearance::minimumSize.height());
    settle();
    QVERIFY(stage.text().viewport()->height() < 2 * stage.pitch());
    for (int above = 0; above < stage.pitch(); ++above) {
      stage.bar().setValue(stage.bar().maximum() - above);
      QVERIFY2(!isEmpty(stage.painted()), qPrintable(QString::number(above)));
    }
  }

  void wheelScrollsByWholeLines() {
    Stage stage(4);
    const int end = stage.bar().value();
    turnWheel(*stage.text().viewport(), 120);
    QCOMPARE(stage.bar().value(), end - 3 * stage.pitch());
    turnWheel(*stage.text().viewport(), 20);
    QCOMPARE(stage.bar().value(), end - 3 * stage.pitch());
    turnWheel(*stage.text().viewport(), 20);
    QCOMPARE(stage.bar().value(), end - 4 * stage.pitch());
    stage.bar().setValue(stage.bar().value() - 5);
    QCOMPARE(stage.bar().value() % stage.pitch(), 0);
  }

  void headerGrowsThePanelAboveItsLines() {
    Stage stage(1);
    const QRect before = stage.panel().geometry();
    stage.controller->setHeader(true, false);
    QCOMPARE(stage.panel().geometry(), before.adjusted(0, -CaptionAppearance::headerHeight, 0, 0));
    stage.controller->setHeader(false, false);
    QCOMPARE(stage.panel().geometry(), before);
  }

  void panelGetsItsEarlierHeightBack() {
    PanelStage stage;
    stage.panel().setAttribute(Qt::WA_DontShowOnScreen);
    stage.controller->show();
    stage.final("One.");
    settle();
    stage.panel().setGeometry(100, 100, 600, 300);
    stage.clock.advance(std::chrono::seconds(1));
    stage.settings.setCaptionLines(2);
    settle();
    QVERIFY(stage.panel().height() < 100);
    QCOMPARE(stage.panel().geometry().bottom(), 399);
    stage.clock.advance(std::chrono::seconds(1));
    QCOMPARE(readFrame(stage.frames, "CaptionPanel"), std::optional(QRect(100, 100, 600, 300)));
    stage.settings.setCaptionLines(0);
    QCOMPARE(stage.panel().geometry(), QRect(100, 100, 600, 300));
    QCOMPARE(stage.panel().minimumSize(), CaptionAppearance::minimumSize);
    QCOMPARE(stage.panel().maximumHeight(), QWIDGETSIZE_MAX);
  }

  void largerTextMakesALargerPanel() {
    Stage stage(2);
    const int before = stage.panel().height();
    stage.settings.setFontSize(48);
    settle();
    QCOMPARE(stage.panel().height(), 2 * stage.pitch() + 2 * TranscriptLayout::verticalInset);
    QVERIFY(stage.panel().height() > 2 * before);
  }

  void onlyTheSidesOfAPanelOfLinesAreDragged() {
    Stage stage(2);
    const auto cursorAt = [&stage](Qt::Edges edges) {
      for (PanelEdge* edge : stage.panel().findChildren<PanelEdge*>()) {
        if (edge->edges() != edges) continue;
        QEnterEvent entered(QPointF(1, 1), QPointF(1, 1), QPointF(1, 1));
        QApplication::sendEvent(edge, &entered);
        return edge->cursor().shape();
      }
      return Qt::BlankCursor;
    };
    QCOMPARE(cursorAt(Qt::BottomEdge), Qt::ArrowCursor);
    QCOMPARE(cursorAt(Qt::BottomEdge | Qt::RightEdge), Qt::SizeHorCursor);
    QCOMPARE(cursorAt(Qt::LeftEdge), Qt::SizeHorCursor);
    stage.settings.setCaptionLines(0);
    QCOMPARE(cursorAt(Qt::BottomEdge), Qt::SizeVerCursor);
    QCOMPARE(cursorAt(Qt::BottomEdge | Qt::RightEdge), Qt::SizeFDiagCursor);
  }

  void emptyStateHasRoom() {
    PanelStage stage;
    stage.panel().setAttribute(Qt::WA_DontShowOnScreen);
    stage.settings.setCaptionLines(1);
    stage.controller->show();
    settle();
    QVERIFY(stage.panel().height() >= stage.view->emptyState().sizeHint().height());
  }
};

QTEST_MAIN(CaptionLinesTest)
#include "caption_lines_test.moc"
