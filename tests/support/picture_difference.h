// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstdlib>
#include <QColor>
#include <QImage>
#include <QString>

namespace velun::test {

/// The difference of the mean colours of the blocks of two pictures: of each block, that of the
/// colour channel that differs most, from 0 to 255.
struct PictureDifference {
  int largest = 0;
  double mean = 0;

  /// Both are small enough for another version of a font, another scale or rounded colours, and too
  /// small for anything that a user would notice.
  bool isTolerable() const { return largest <= 40 && mean <= 5; }
  QString text() const {
    return QStringLiteral("at most %1, mean %2").arg(largest).arg(mean, 0, 'f', 2);
  }
};

/// Compares two pictures of any sizes, in `blocks` columns and rows.
inline PictureDifference differenceOf(const QImage& a, const QImage& b, QSize blocks) {
  const auto colors = [blocks](const QImage& image) {
    return image.scaled(blocks, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_RGB32);
  };
  const QImage first = colors(a);
  const QImage second = colors(b);
  PictureDifference difference;
  for (int y = 0; y < blocks.height(); ++y) {
    for (int x = 0; x < blocks.width(); ++x) {
      const QColor one = first.pixelColor(x, y);
      const QColor two = second.pixelColor(x, y);
      const int here =
          std::max({std::abs(one.red() - two.red()), std::abs(one.green() - two.green()),
                    std::abs(one.blue() - two.blue())});
      difference.largest = std::max(difference.largest, here);
      difference.mean += here;
    }
  }
  difference.mean /= blocks.width() * blocks.height();
  return difference;
}

}  // namespace velun::test
