// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QToolButton>

class QPainter;

namespace velun {

/// A button on the dark panel, whose ground and focus ring the style would paint for light windows.
/// Main thread.
class PanelButton : public QToolButton {
  Q_OBJECT

 public:
  explicit PanelButton(QWidget* parent = nullptr);

  /// The colour of a line around the button.
  void setEdge(const QColor& color);

 protected:
  /// Paints what shows that the pointer is over the button, that it is pressed or has the keyboard.
  /// `raised` is the opacity of the white ground at rest, 0 to 1; `corner` is a radius in points.
  void paintGround(QPainter& painter, double raised, double corner) const;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  QColor edge_{Qt::transparent};
};

}  // namespace velun
