// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace velun {

/// An invisible strip at an edge or corner of the panel by which it is resized.
class PanelEdge final : public QWidget {
  Q_OBJECT

 public:
  PanelEdge(Qt::Edges edges, QWidget* panel);

  Qt::Edges edges() const { return edges_; }
  /// Positions the strip along the panel's current frame.
  void place();

 Q_SIGNALS:
  void pressed(Qt::Edges edges, const QPoint& globalPosition);
  void moved(const QPoint& globalPosition);
  void released();

 protected:
  void enterEvent(QEnterEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  Qt::Edges movableEdges() const;

  Qt::Edges edges_;
};

}  // namespace velun
