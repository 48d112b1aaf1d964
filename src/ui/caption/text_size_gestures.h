// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class QWidget;

namespace velun {

class AppSettings;

/// Changes the text size with Ctrl and the mouse wheel, and by pinching on a touchpad or a touch
/// screen, over the widgets that it watches. Main thread.
class TextSizeGestures final : public QObject {
  Q_OBJECT

 public:
  /// `settings` must outlive the object.
  TextSizeGestures(AppSettings& settings, QObject* parent);

  /// Begins to watch a widget; for a scroll area, its viewport.
  void watch(QWidget& widget);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void turn(double notches);
  void pinch(double factor);

  AppSettings& settings_;
  // Parts of a step that are not applied yet.
  double notches_ = 0;
  double scale_ = 1;
};

}  // namespace velun
