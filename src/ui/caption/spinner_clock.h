// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <QBasicTimer>
#include <QObject>
#include <vector>

class QWidget;

namespace velun {

/// Rotates all spinners with one timer, which runs only while a spinner is added. Main thread.
class SpinnerClock final : public QObject {
  Q_OBJECT

 public:
  /// The clock of the program. It exists as long as somebody keeps the pointer.
  static std::shared_ptr<SpinnerClock> shared();

  /// Repaints the widget at every step until it is removed or the desktop asks for reduced motion.
  /// The widget must be removed before it is destroyed.
  void add(QWidget& spinner);
  void remove(const QWidget& spinner);

  /// The rotation at the last step, the same for all spinners, from 0 to 1.
  double phase() const { return phase_; }
  bool isRunning() const { return timer_.isActive(); }

 Q_SIGNALS:
  /// The phase has changed and the spinners will be repainted.
  void stepped();

 protected:
  void timerEvent(QTimerEvent* event) override;

 private:
  void updatePhase();

  QBasicTimer timer_;
  double phase_ = 0;
  std::vector<QWidget*> spinners_;
};

}  // namespace velun
