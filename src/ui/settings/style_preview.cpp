// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/style_preview.h"

#include "language/localization.h"
#include "ui/caption/caption_colors.h"
#include "ui/caption/panel_surface.h"
#include "ui/caption/text_halo.h"
#include "ui/caption/transcript_layout.h"
#include "ui/common/accessible_role.h"

#include <algorithm>
#include <QPainter>
#include <QPainterPath>

namespace velun {

namespace {

constexpr int kHeight = 168;
constexpr int kMargin = 14;
constexpr double kMaxShownSize = 30;

/// A sentence with its translation.
Line line(const QString& text, const QString& translation) {
  Line line;
  line.text = text;
  line.translations[QStringLiteral("xx")] = translation;
  return line;
}

void paintHills(QPainter& painter, const QRectF& area) {
  QLinearGradient sky(area.topLeft(), area.bottomLeft());
  sky.setColorAt(0, QColor(74, 112, 168));
  sky.setColorAt(0.6, QColor(222, 190, 160));
  sky.setColorAt(1, QColor(250, 224, 170));
  painter.fillRect(area, sky);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(255, 244, 214));
  painter.drawEllipse(QPointF(area.right() - area.width() * 0.2, area.top() + 40), 22, 22);
  const auto hill = [&](double from, double peak, double height, const QColor& color) {
    QPainterPath path(QPointF(area.left() + area.width() * from, area.bottom()));
    const QPointF top(area.left() + area.width() * peak, area.bottom() - area.height() * height);
    path.quadTo(top, QPointF(area.left() + area.width() * (2 * peak - from), area.bottom()));
    painter.setBrush(color);
    painter.drawPath(path);
  };
  hill(-0.3, 0.15, 1.1, QColor(92, 126, 110));
  hill(0.35, 0.85, 1.3, QColor(64, 98, 92));
  hill(-0.1, 0.5, 0.6, QColor(42, 66, 58));
}

}  // namespace

QString title(StylePreview::Backdrop backdrop) {
  switch (backdrop) {
    case StylePreview::Backdrop::picture:
      return L("Picture", "사진");
    case StylePreview::Backdrop::light:
      return L("Light", "밝은 바탕");
    case StylePreview::Backdrop::dark:
      return L("Dark", "어두운 바탕");
  }
  return {};
}

StylePreview::StylePreview(QWidget* parent) : QWidget(parent) {
  setAccessibleRole(*this, QAccessible::Graphic);
  setFixedHeight(kHeight);
  translate();
}

void StylePreview::translate() {
  setAccessibleName(L("Preview", "미리 보기"));
  const QString english[] = {QStringLiteral("The sea was calm that morning."),
                             QStringLiteral("Nobody expected the storm.")};
  const QString korean[] = {QStringLiteral("그날 아침 바다는 잔잔했습니다."),
                            QStringLiteral("아무도 폭풍을 예상하지 못했습니다.")};
  session_.lines.clear();
  for (int i = 0; i < 2; ++i) {
    session_.lines.push_back(line(L(english[i], korean[i]), L(korean[i], english[i])));
  }
  build();
}

void StylePreview::setStyle(const PanelStyle& style, double fontSize) {
  style_ = style;
  fontSize_ = std::min(fontSize, kMaxShownSize);
  build();
}

void StylePreview::setBackdrop(Backdrop backdrop) {
  backdrop_ = backdrop;
  update();
}

QRect StylePreview::panelRect() const {
  return rect().marginsRemoved({kMargin, kMargin, kMargin, kMargin});
}

void StylePreview::build() {
  if (fontSize_ <= 0) return;
  TranscriptInputs inputs;
  inputs.session = &session_;
  inputs.fontSize = fontSize_;
  inputs.captionStyle = true;
  inputs.style = style_;
  document_.layout().setEdge(style_.edge, haloRadius(fontSize_));
  document_.setFormats(TranscriptFormats(inputs, palette()));
  document_.replace(0, document_.shown().size(), attributedTranscript(inputs));
  layOut();
  update();
}

/// All at once, because two sentences are short and the height of the whole is needed.
void StylePreview::layOut() {
  while (document_.layOutMore(std::chrono::milliseconds(1))) {
  }
}

void StylePreview::resizeEvent(QResizeEvent*) {
  document_.text().setPageSize(QSizeF(panelRect().width(), -1));
  layOut();
}

void StylePreview::paintBackdrop(QPainter& painter) const {
  switch (backdrop_) {
    case Backdrop::picture:
      return paintHills(painter, rect());
    case Backdrop::light:
      return painter.fillRect(rect(), QColor(250, 250, 250));
    case Backdrop::dark:
      return painter.fillRect(rect(), QColor(24, 26, 30));
  }
}

void StylePreview::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QPainterPath frame;
  frame.addRoundedRect(rect(), 8, 8);
  painter.setClipPath(frame);
  paintBackdrop(painter);
  const QRect panel = panelRect();
  paintPanelSurface(painter, panel, style_.corner, panelFill(style_, false), CaptionColors().edge);
  painter.setClipRect(panel, Qt::IntersectClip);
  // The end of a text that is too long, as in the panel.
  const int height = static_cast<int>(document_.layout().documentSize().height());
  const int hidden = std::max(height - panel.height(), 0);
  painter.translate(panel.left(), panel.top() - hidden);
  QAbstractTextDocumentLayout::PaintContext context;
  context.palette.setColor(QPalette::Text, style_.text);
  context.clip = QRectF(0, hidden, panel.width(), panel.height());
  document_.layout().draw(&painter, context);
}

}  // namespace velun
