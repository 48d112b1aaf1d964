// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/text_size_gestures.h"

#include "settings/app_settings.h"

#include <cmath>
#include <QGestureEvent>
#include <QNativeGestureEvent>
#include <QPinchGesture>
#include <QWheelEvent>
#include <QWidget>

namespace velun {

namespace {

// A wheel reports this angle for a notch; a touchpad reports parts of it.
constexpr double kNotch = QWheelEvent::DefaultDeltasPerStep;
// How far two fingers move apart for a step.
constexpr double kPinchStep = 1.12;

}  // namespace

TextSizeGestures::TextSizeGestures(AppSettings& settings, QObject* parent)
    : QObject(parent), settings_(settings) {}

void TextSizeGestures::watch(QWidget& widget) {
  widget.installEventFilter(this);
  widget.grabGesture(Qt::PinchGesture);
}

bool TextSizeGestures::eventFilter(QObject*, QEvent* event) {
  switch (event->type()) {
    case QEvent::Wheel: {
      auto* wheel = static_cast<QWheelEvent*>(event);
      if (!wheel->modifiers().testFlag(Qt::ControlModifier)) return false;
      wheel->accept();
      turn(wheel->angleDelta().y() / kNotch);
      return true;
    }
    case QEvent::NativeGesture: {
      const auto* gesture = static_cast<QNativeGestureEvent*>(event);
      if (gesture->gestureType() == Qt::BeginNativeGesture) scale_ = 1;
      if (gesture->gestureType() != Qt::ZoomNativeGesture) return false;
      pinch(1 + gesture->value());
      return true;
    }
    case QEvent::Gesture: {
      const QGesture* gesture = static_cast<QGestureEvent*>(event)->gesture(Qt::PinchGesture);
      if (!gesture) return false;
      if (gesture->state() == Qt::GestureStarted) scale_ = 1;
      pinch(static_cast<const QPinchGesture*>(gesture)->scaleFactor());
      return true;
    }
    default:
      return false;
  }
}

void TextSizeGestures::turn(double notches) {
  // A turn in the other direction begins anew.
  if (notches * notches_ < 0) notches_ = 0;
  notches_ += notches;
  const int steps = static_cast<int>(notches_);
  notches_ -= steps;
  if (steps != 0) settings_.stepFontSize(steps);
}

void TextSizeGestures::pinch(double factor) {
  if (!(factor > 0)) return;
  scale_ *= factor;
  const int steps = static_cast<int>(std::log(scale_) / std::log(kPinchStep));
  if (steps == 0) return;
  scale_ /= std::pow(kPinchStep, steps);
  settings_.stepFontSize(steps);
}

}  // namespace velun
