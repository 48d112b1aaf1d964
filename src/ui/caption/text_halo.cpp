// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/text_halo.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace velun {

namespace {

constexpr double kOutlineShare = 0.075;
constexpr double kMinRadius = 1;
// A larger disc is composed of several of this size, which is cheaper.
constexpr double kMaxDisc = 2;
// Of a shadow, as parts of the radius.
constexpr double kShadowSpread = 0.8;
constexpr double kShadowBlur = 1.6;
constexpr double kShadowDrop = 0.6;
// A blurred shadow is lighter than the letters were.
constexpr int kShadowStrength = 3;

/// A picture of opacities.
struct Mask {
  Mask(int w, int h) : width(w), height(h), values(static_cast<std::size_t>(w) * h) {}

  uchar* row(int y) { return values.data() + static_cast<std::size_t>(y) * width; }
  const uchar* row(int y) const { return values.data() + static_cast<std::size_t>(y) * width; }

  int width;
  int height;
  std::vector<uchar> values;
};

/// Letters may be translucent; their outline is not.
Mask lettersOf(const QImage& text) {
  Mask mask(text.width(), text.height());
  int most = 1;
  for (int y = 0; y < mask.height; ++y) {
    const auto* from = reinterpret_cast<const QRgb*>(text.constScanLine(y));
    for (int x = 0; x < mask.width; ++x) most = std::max(most, qAlpha(from[x]));
  }
  for (int y = 0; y < mask.height; ++y) {
    const auto* from = reinterpret_cast<const QRgb*>(text.constScanLine(y));
    uchar* to = mask.row(y);
    for (int x = 0; x < mask.width; ++x) to[x] = static_cast<uchar>(qAlpha(from[x]) * 255 / most);
  }
  return mask;
}

/// Each pixel gets the largest value within the radius.
Mask grown(const Mask& mask, double radius) {
  Mask result(mask.width, mask.height);
  const int reach = static_cast<int>(std::ceil(radius));
  const double limit = (radius + 0.3) * (radius + 0.3);
  for (int dy = -reach; dy <= reach; ++dy) {
    for (int dx = -reach; dx <= reach; ++dx) {
      if (dx * dx + dy * dy > limit) continue;
      const int left = std::max(0, -dx);
      const int right = std::min(mask.width, mask.width - dx);
      const int bottom = std::min(mask.height, mask.height - dy);
      for (int y = std::max(0, -dy); y < bottom; ++y) {
        const uchar* from = mask.row(y + dy) + dx;
        uchar* to = result.row(y);
        for (int x = left; x < right; ++x) to[x] = std::max(to[x], from[x]);
      }
    }
  }
  return result;
}

Mask outlineOf(Mask mask, double radius) {
  const int discs = std::max(1, static_cast<int>(std::ceil(radius / kMaxDisc)));
  for (int i = 0; i < discs; ++i) mask = grown(mask, radius / discs);
  return mask;
}

/// The mean over `2 × radius + 1` values of a row or column.
void blurLine(uchar* first, std::ptrdiff_t step, int count, int radius, std::vector<uchar>& copy) {
  copy.resize(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) copy[static_cast<std::size_t>(i)] = first[i * step];
  const auto at = [&copy, count](int i) {
    return i < 0 || i >= count ? 0 : int(copy[static_cast<std::size_t>(i)]);
  };
  int sum = 0;
  for (int i = -radius; i < radius; ++i) sum += at(i);
  for (int i = 0; i < count; ++i) {
    sum += at(i + radius);
    first[i * step] = static_cast<uchar>(sum / (2 * radius + 1));
    sum -= at(i - radius);
  }
}

void blur(Mask& mask, int radius) {
  std::vector<uchar> copy;
  for (int y = 0; y < mask.height; ++y) blurLine(mask.row(y), 1, mask.width, radius, copy);
  for (int x = 0; x < mask.width; ++x) {
    blurLine(mask.row(0) + x, mask.width, mask.height, radius, copy);
  }
}

Mask shadowOf(const Mask& letters, double radius) {
  Mask soft = outlineOf(letters, radius * kShadowSpread);
  const int reach = std::max(1, qRound(radius * kShadowBlur / 2));
  blur(soft, reach);
  blur(soft, reach);
  const int drop = std::max(1, qRound(radius * kShadowDrop));
  Mask shadow(soft.width, soft.height);
  for (int y = drop; y < soft.height; ++y) {
    std::transform(soft.row(y - drop), soft.row(y - drop) + soft.width, shadow.row(y),
                   [](uchar value) { return uchar(std::min(value * kShadowStrength / 2, 255)); });
  }
  return shadow;
}

}  // namespace

double haloRadius(double textSize) {
  return std::max(kMinRadius, textSize * kOutlineShare);
}

int haloReach(TextEdge edge, double radius) {
  switch (edge) {
    case TextEdge::none:
      return 0;
    case TextEdge::outline:
      return static_cast<int>(std::ceil(radius)) + 1;
    case TextEdge::shadow:
      return static_cast<int>(std::ceil(radius * (kShadowSpread + kShadowBlur + kShadowDrop))) + 3;
  }
  return 0;
}

QImage textHalo(const QImage& text, TextEdge edge, double radius, const QColor& color) {
  const Mask letters = lettersOf(text);
  const Mask mask =
      edge == TextEdge::outline ? outlineOf(letters, radius) : shadowOf(letters, radius);
  QImage halo(text.size(), QImage::Format_ARGB32_Premultiplied);
  halo.setDevicePixelRatio(text.devicePixelRatio());
  for (int y = 0; y < mask.height; ++y) {
    const uchar* from = mask.row(y);
    auto* to = reinterpret_cast<QRgb*>(halo.scanLine(y));
    for (int x = 0; x < mask.width; ++x) {
      to[x] = qPremultiply(qRgba(color.red(), color.green(), color.blue(), from[x]));
    }
  }
  return halo;
}

QColor haloColor(const QColor& text) {
  return contrastRatio(text, Qt::black) >= contrastRatio(text, Qt::white) ? Qt::black : Qt::white;
}

}  // namespace velun
