// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/halo_cache.h"

#include "ui/caption/text_halo.h"

#include <cmath>
#include <QPaintEngine>
#include <QPainter>
#include <QTextBlock>
#include <QTextLayout>

namespace velun {

namespace {

constexpr qsizetype kKibibyte = 1024;

/// The area of the letters in the coordinates of the layout.
QRectF lettersIn(const QTextLayout& layout) {
  QRectF area;
  for (int i = 0; i < layout.lineCount(); ++i) area |= layout.lineAt(i).naturalTextRect();
  return area;
}

}  // namespace

void HaloCache::setEdge(TextEdge edge, double radius) {
  edge_ = edge;
  radius_ = radius;
  clear();
}

int HaloCache::reach() const {
  return haloReach(edge_, radius_);
}

void HaloCache::paint(QPainter& painter, const QTextBlock& block) {
  const QTextBlock::iterator first = block.begin();
  if (edge_ == TextEdge::none || first.atEnd()) return;
  // Not the painter's device, which is the widget even while it is rendered into a picture.
  const double ratio = painter.paintEngine()->paintDevice()->devicePixelRatioF();
  const Key key{block.text(), first.fragment().charFormatIndex(), ratio};
  Halo* halo = halos_.object(key);
  if (!halo) {
    halo = make(block, ratio);
    const qsizetype cost = halo->image.sizeInBytes() / kKibibyte + 1;
    // A picture larger than the cache is painted and not kept.
    if (cost > halos_.maxCost()) {
      painter.drawImage(block.layout()->position() + halo->at, halo->image);
      delete halo;
      return;
    }
    halos_.insert(key, halo, cost);
  }
  painter.drawImage(block.layout()->position() + halo->at, halo->image);
}

HaloCache::Halo* HaloCache::make(const QTextBlock& block, double ratio) const {
  QTextLayout* layout = block.layout();
  const int reach = this->reach();
  // On whole points, so that letters and halo have the same pixels.
  const QRect area = lettersIn(*layout).toAlignedRect().adjusted(-reach, -reach, reach, reach);
  QImage letters(QSize(static_cast<int>(std::ceil(area.width() * ratio)),
                       static_cast<int>(std::ceil(area.height() * ratio))),
                 QImage::Format_ARGB32_Premultiplied);
  letters.setDevicePixelRatio(ratio);
  letters.fill(Qt::transparent);
  {
    QPainter painter(&letters);
    layout->draw(&painter, -layout->position() - QPointF(area.topLeft()));
  }
  const QColor text = block.begin().fragment().charFormat().foreground().color();
  return new Halo{textHalo(letters, edge_, radius_ * ratio, haloColor(text)),
                  QPointF(area.topLeft())};
}

}  // namespace velun
