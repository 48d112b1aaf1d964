// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "settings/panel_style.h"

#include <QCache>
#include <QImage>
#include <QString>

class QPainter;
class QTextBlock;

namespace velun {

/// Paints the outlines or shadows of a transcript's paragraphs. Keeps the pictures of those painted
/// last, so that a draft that grows costs one paragraph.
class HaloCache final {
 public:
  /// `radius` is in points.
  void setEdge(TextEdge edge, double radius);
  TextEdge edge() const { return edge_; }
  double radius() const { return radius_; }
  /// How far a halo reaches beyond its letters, in points.
  int reach() const;
  /// Forgets every picture, such as after a change of width.
  void clear() { halos_.clear(); }

  /// Paints the halo of a paragraph that is laid out, with its layout's position.
  void paint(QPainter& painter, const QTextBlock& block);

 private:
  struct Key {
    QString text;
    // The fonts and colours of a document are numbered.
    int format = 0;
    double ratio = 1;

    bool operator==(const Key&) const = default;
    friend size_t qHash(const Key& key, size_t seed = 0) {
      return qHashMulti(seed, key.text, key.format, key.ratio);
    }
  };
  struct Halo {
    QImage image;
    // Of the picture's corner in the layout.
    QPointF at;
  };

  Halo* make(const QTextBlock& block, double ratio) const;

  TextEdge edge_ = TextEdge::none;
  double radius_ = 1;
  QCache<Key, Halo> halos_{kMaxKibibytes};

  static constexpr int kMaxKibibytes = 16 * 1024;
};

}  // namespace velun
