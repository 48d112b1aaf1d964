// SPDX-License-Identifier: GPL-3.0-or-later
// Takes the pictures of the documentation: documentation_pictures FOLDER. Panels stand on a painted
// evening or above a painted video, windows on a plain background, all at a device pixel ratio
// of 2.

#include "language/localization.h"
#include "support/settle.h"
#include "ui/caption/panel_stage.h"
#include "ui/common/window_look.h"
#include "ui/pictures/shown_windows.h"

#include <QApplication>
#include <QDir>
#include <QPainter>
#include <QPainterPath>

using namespace velun;

namespace {

constexpr int kScale = 2;
constexpr int kMargin = 36;
constexpr QSize kVideo(900, 506);

void paintEvening(QPainter& painter, const QRectF& area) {
  QLinearGradient sky(area.topLeft(), area.bottomLeft());
  sky.setColorAt(0, QColor(38, 52, 94));
  sky.setColorAt(0.55, QColor(196, 116, 112));
  sky.setColorAt(0.8, QColor(244, 186, 128));
  painter.fillRect(area, sky);
  painter.setPen(Qt::NoPen);
  const auto range = [&](double base, double height, int waves, const QColor& color) {
    QPainterPath path(area.bottomLeft());
    for (int x = 0; x <= 100; ++x) {
      const double wave = std::sin(x * 0.0628 * waves) + 0.4 * std::sin(x * 0.19 * waves + 1);
      path.lineTo(area.left() + area.width() * x / 100,
                  area.bottom() - area.height() * (base + height * wave));
    }
    path.lineTo(area.bottomRight());
    painter.setBrush(color);
    painter.drawPath(path);
  };
  range(0.34, 0.06, 1, QColor(120, 78, 104));
  range(0.22, 0.05, 2, QColor(74, 58, 92));
  range(0.10, 0.03, 3, QColor(38, 36, 62));
}

/// The controls of a video player, along the lower edge of `area`.
void paintPlayer(QPainter& painter, const QRectF& area) {
  constexpr double kBar = 34;
  const QRectF bar(area.left(), area.bottom() - kBar, area.width(), kBar);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(0, 0, 0, 170));
  painter.drawRect(bar);
  painter.setBrush(Qt::white);
  const QPointF play(bar.left() + 20, bar.center().y());
  painter.drawPolygon(
      QPolygonF{play + QPointF(-5, -7), play + QPointF(8, 0), play + QPointF(-5, 7)});
  const QRectF whole(bar.left() + 48, bar.center().y() - 2, bar.width() - 72, 4);
  QRectF played = whole;
  played.setWidth(whole.width() * 0.37);
  painter.setBrush(QColor(255, 255, 255, 90));
  painter.drawRoundedRect(whole, 2, 2);
  painter.setBrush(QColor(236, 120, 96));
  painter.drawRoundedRect(played, 2, 2);
  painter.drawEllipse(QPointF(played.right(), played.center().y()), 6, 6);
}

void paintVideo(QPainter& painter, const QRectF& area) {
  paintEvening(painter, area);
  painter.setBrush(QColor(255, 226, 176));
  painter.drawEllipse(QPointF(area.width() * 0.72, area.height() * 0.30), 34, 34);
  paintPlayer(painter, area);
}

void paintShadow(QPainter& painter, const QRectF& frame, double radius) {
  painter.setPen(Qt::NoPen);
  for (int step = 14; step > 0; --step) {
    painter.setBrush(QColor(0, 0, 0, 5));
    const QRectF grown = frame.adjusted(-step, -step, step, step).translated(0, 5);
    painter.drawRoundedRect(grown, radius + step, radius + step);
  }
}

class Pictures {
 public:
  explicit Pictures(const QString& folder) : folder_(folder) {}

  void panel(const QString& name, test::PanelStage& stage) const {
    const QImage picture = pictureOf(stage.panel());
    QImage whole = emptyPicture(stage.panel().size() + 2 * QSize(kMargin, kMargin));
    QPainter painter(&whole);
    painter.setRenderHint(QPainter::Antialiasing);
    paintEvening(painter, QRectF(QPointF(), whole.deviceIndependentSize()));
    painter.drawImage(QPoint(kMargin, kMargin), picture);
    painter.end();
    save(name, whole);
  }

  void panelOverVideo(const QString& name, test::PanelStage& stage) const {
    constexpr int kAboveControls = 60;
    const QImage picture = pictureOf(stage.panel());
    const QSize size = stage.panel().size();
    QImage whole = emptyPicture(kVideo);
    QPainter painter(&whole);
    painter.setRenderHint(QPainter::Antialiasing);
    paintVideo(painter, QRectF(QPointF(), QSizeF(kVideo)));
    painter.drawImage(QPoint((kVideo.width() - size.width()) / 2,
                             kVideo.height() - kAboveControls - size.height()),
                      picture);
    painter.end();
    save(name, whole);
  }

  void window(const QString& name, QWidget& window) const {
    constexpr int kCorner = 10;
    const QImage picture = test::pictureOf(window, kScale);
    QImage whole = emptyPicture(window.size() + 2 * QSize(kMargin, kMargin));
    QPainter painter(&whole);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(whole.rect(), QColor(206, 212, 222));
    const QRectF frame(QPointF(kMargin, kMargin), QSizeF(window.size()));
    paintShadow(painter, frame, kCorner);
    QPainterPath clip;
    clip.addRoundedRect(frame, kCorner, kCorner);
    painter.setClipPath(clip);
    painter.drawImage(frame.topLeft(), picture);
    painter.end();
    save(name, whole);
  }

 private:
  static QImage pictureOf(QWidget& panel) {
    test::settle();
    QImage picture(panel.size() * kScale, QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(kScale);
    picture.fill(Qt::transparent);
    // Without a background of the style, so that its own is translucent.
    panel.render(&picture, QPoint(), QRegion(), QWidget::DrawChildren);
    return picture;
  }

  static QImage emptyPicture(QSize size) {
    QImage whole(size * kScale, QImage::Format_RGB32);
    whole.setDevicePixelRatio(kScale);
    return whole;
  }

  void save(const QString& name, const QImage& picture) const {
    if (!picture.save(QDir(folder_).filePath(name + ".png"))) {
      qFatal("cannot write %s", qPrintable(name));
    }
  }

  QString folder_;
};

struct Sentence {
  const char* english;
  const char* korean;
};
constexpr Sentence kTalk[] = {
    {"Good morning, everyone, and thank you for coming.",
     "안녕하세요, 여러분. 와 주셔서 감사합니다."},
    {"Today we look at how the harbour was rebuilt after the storm of 1953.",
     "오늘은 1953년 폭풍 뒤에 항구가 어떻게 재건되었는지 살펴봅니다."},
    {"The old sea wall had not failed where everybody expected it to.",
     "옛 방파제는 모두가 예상한 곳에서 무너진 것이 아니었습니다."},
    {"It had been undermined from behind.", "뒤쪽에서부터 기초가 깎여 나갔습니다."}};

/// A panel in the middle of a talk.
struct Talk {
  Talk(const std::function<void(AppSettings&)>& prepare, QSize size, bool isTranslated = false,
       bool isHighContrast = false)
      : stage(prepare) {
    DesktopCapabilities can;
    can.compositing = true;
    stage.desktop.setCapabilities(can);
    stage.desktop.setHighContrast(isHighContrast);
    stage.panel().setAttribute(Qt::WA_DontShowOnScreen);
    stage.panel().resize(size);
    stage.controller->show();
    stage.engine->bands = {-18, -14, -16, -12, -20, -17, -24, -28, -25, -33, -38};
    stage.translation.translate = [](const QString& text) {
      for (const Sentence& each : kTalk) {
        if (text == QString::fromUtf8(each.english)) return QString::fromUtf8(each.korean);
      }
      return QString();
    };
    stage.settings.setTranslate(isTranslated);
    stage.start();
    for (const Sentence& each : kTalk) stage.final(QString::fromUtf8(each.english));
    test::settle();
  }

  test::PanelStage stage;
};

void takePanels(const Pictures& pictures) {
  const auto set = [](PanelSet chosen, double size, int lines) {
    return [chosen, size, lines](AppSettings& settings) {
      settings.setPanelSet(chosen);
      settings.setFontSize(size);
      settings.setCaptionLines(lines);
    };
  };
  {
    Talk talk(set(PanelSet::calm, 16, 0), {620, 196});
    talk.stage.draft("So they began with the drainage, which nobody had");
    talk.stage.controller->setHeader(true, false);
    // The meter goes up in steps.
    for (int step = 0; step < 20; ++step) {
      talk.stage.clock.advance(std::chrono::milliseconds(50));
      test::settle();
    }
    pictures.panel("panel", talk.stage);
  }
  Talk watched(set(PanelSet::calm, 17, 4), {640, 190}, true);
  pictures.panelOverVideo("panel-video", watched.stage);
  Talk translated(set(PanelSet::clearOnDark, 16, 0), {620, 260}, true);
  pictures.panel("panel-translation", translated.stage);
  Talk subtitle(set(PanelSet::subtitle, 24, 2), {620, 190});
  pictures.panel("panel-subtitle", subtitle.stage);
  Talk yellow(set(PanelSet::yellowOnBlack, 18, 3), {620, 190});
  pictures.panel("panel-yellow", yellow.stage);
  Talk paper(set(PanelSet::blackOnWhite, 17, 0), {620, 200});
  pictures.panel("panel-paper", paper.stage);
  Talk contrast(set(PanelSet::calm, 18, 0), {620, 200}, true, true);
  pictures.panel("panel-contrast", contrast.stage);
}

void takeWindows(const Pictures& pictures) {
  WindowLook look;
  look.set(ColorScheme::light, false, true);
  {
    test::ShownWindows windows(AppLanguage::english);
    pictures.window("library", windows.show("library"));
    pictures.window("settings-appearance", windows.show("appearance"));
    pictures.window("settings-models", windows.show("models"));
    pictures.window("export", windows.show("export"));
    pictures.window("recordings", windows.show("recordings"));
  }
  look.set(ColorScheme::dark, false, true);
  test::ShownWindows windows(AppLanguage::korean);
  pictures.window("library-dark", windows.show("library"));
  pictures.window("settings-captions", windows.show("captions"));
}

}  // namespace

int main(int argc, char** argv) {
  // Symbols are drawn for the scale of the window that they are in.
  qputenv("QT_SCALE_FACTOR", QByteArray::number(kScale));
  QApplication application(argc, argv);
  if (argc != 2 || !QDir().mkpath(argv[1])) {
    qCritical("usage: documentation_pictures FOLDER");
    return 2;
  }
  QApplication::setStyle("Fusion");
  const Pictures pictures(QString::fromLocal8Bit(argv[1]));
  takePanels(pictures);
  takeWindows(pictures);
  return 0;
}
