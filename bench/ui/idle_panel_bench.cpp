// SPDX-License-Identifier: GPL-3.0-or-later
// A visible panel with captions on while nothing is said.
#include "measure.h"
#include "ui/caption/panel_stage.h"

#include <QApplication>
#include <QDeadlineTimer>

using namespace velun;
using bench::report;

namespace {

constexpr int kSeconds = 5;

/// Counts what the panel's widgets do.
class Activity final : public QObject {
 public:
  explicit Activity(QWidget& panel) : panel_(panel) { qApp->installEventFilter(this); }

  int paints = 0;
  int timers = 0;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Timer) ++timers;
    const auto* widget = qobject_cast<const QWidget*>(watched);
    if (event->type() == QEvent::Paint && widget && widget->window() == &panel_) ++paints;
    return false;
  }

 private:
  QWidget& panel_;
};

void passTime(std::chrono::milliseconds duration) {
  const QDeadlineTimer end(duration);
  while (!end.hasExpired()) {
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents,
                                    int(end.remainingTime()));
  }
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  test::PanelStage stage;
  stage.controller->show();
  stage.start();
  stage.final("Nothing is said after this line.");
  // The last line is laid out and painted before the panel is idle.
  passTime(std::chrono::seconds{1});
  Activity activity(stage.panel());
  passTime(std::chrono::seconds{kSeconds});
  report("panel_idle_repaints_per_s", double(activity.paints) / kSeconds, "/s");
  report("panel_idle_timers_per_s", double(activity.timers) / kSeconds, "/s");
}
