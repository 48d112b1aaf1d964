// SPDX-License-Identifier: GPL-3.0-or-later
// Measures the time from a change of a transcript of ten thousand lines in the caption panel until
// it is painted.
#include "measure.h"
#include "model/caption_session.h"
#include "ui/caption/selectable_transcript_text_view.h"
#include "ui/caption/transcript_view.h"

#include <algorithm>
#include <QApplication>
#include <QEvent>
#include <QScrollBar>
#include <QThread>
#include <utility>
#include <vector>

using namespace velun;

namespace {

constexpr int kLineCount = 10000;
constexpr QSize kPanelSize(560, 206);
constexpr TranscriptChange kAdded{.lines = TranscriptChange::Lines::added};

class PaintCount final : public QObject {
 public:
  explicit PaintCount(QWidget* widget) { widget->installEventFilter(this); }

  int count = 0;

 private:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) ++count;
    return false;
  }
};

class Stage {
 public:
  Stage() {
    inputs.session = &session;
    inputs.followsLatest = true;
    inputs.captionStyle = true;
    inputs.language = "ko";
    session.lines.reserve(2UL * kLineCount);
    for (int i = 0; i < kLineCount; ++i) addLine();
    view.resize(kPanelSize);
    view.show();
    view.update(inputs);
    finish();
    rest();
  }

  void addLine() {
    Line line;
    line.text = QStringLiteral("This is sentence number %1 of a talk that goes on for a whole day.")
                    .arg(session.lines.size());
    session.lines.push_back(std::move(line));
  }

  /// Processes all pending events and paints the view.
  void finish() {
    QCoreApplication::processEvents();
    view.textView().viewport()->repaint();
  }

  /// Waits until the background layout is complete.
  void rest() {
    for (int same = 0, height = 0; same < 20; ++same) {
      QThread::msleep(10);
      finish();
      const int now = view.textView().verticalScrollBar()->maximum();
      if (std::exchange(height, now) != now) same = 0;
    }
  }

  /// Milliseconds of each of `count` changes, in ascending order.
  template <class Change>
  std::vector<double> measure(int count, Change change) {
    std::vector<double> times;
    times.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
      times.push_back(bench::millisecondsOf([&] {
        change(i);
        finish();
      }));
    }
    std::ranges::sort(times);
    return times;
  }

  /// Milliseconds of each of `count` changes until the event loop has painted it, in ascending
  /// order.
  template <class Change>
  std::vector<double> measureShown(int count, Change change) {
    PaintCount paints(view.textView().viewport());
    std::vector<double> times;
    for (int i = 0; i < count; ++i) {
      const int before = paints.count;
      times.push_back(bench::millisecondsOf([&] {
        change(i);
        while (paints.count == before) {
          QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
      }));
    }
    std::ranges::sort(times);
    return times;
  }

  CaptionSession session;
  TranscriptInputs inputs;
  TranscriptView view;
};

double quantile(const std::vector<double>& sorted, double part) {
  return sorted[static_cast<std::size_t>(part * static_cast<double>(sorted.size() - 1))];
}

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  Stage stage;

  const auto growDraft = [&](int i) {
    std::vector<TranscriptDraft>& drafts = stage.inputs.drafts;
    if (i % 20 == 0 || drafts.empty()) drafts = {{QStringLiteral("So")}};
    drafts.front().text += QStringLiteral(" words");
    stage.view.update(stage.inputs, kAdded);
  };
  const auto drafts = stage.measure(600, growDraft);
  bench::report("transcript_draft_10k_median_ms", quantile(drafts, 0.5), "ms");
  bench::report("transcript_draft_10k_p99_ms", quantile(drafts, 0.99), "ms");

  const auto shown = stage.measureShown(200, growDraft);
  bench::report("transcript_shown_p95_ms", quantile(shown, 0.95), "ms");

  const auto lines = stage.measure(200, [&](int) {
    stage.addLine();
    stage.inputs.drafts.clear();
    stage.view.update(stage.inputs, kAdded);
  });
  bench::report("transcript_line_10k_ms", quantile(lines, 0.5), "ms");

  const auto translations = stage.measure(200, [&](int i) {
    const int index =
        i % 2 == 0 ? kLineCount / 2 + i : static_cast<int>(stage.session.lines.size()) - 1 - i;
    stage.session.lines[static_cast<std::size_t>(index)].translations["ko"] =
        QStringLiteral("하루 종일 이어지는 강연의 한 문장입니다.");
    stage.view.update(stage.inputs, {.lines = TranscriptChange::Lines::one, .index = index});
  });
  bench::report("transcript_translation_10k_ms", quantile(translations, 0.5), "ms");

  for (const auto& [edge, figure] :
       {std::pair(TextEdge::outline, "transcript_draft_outlined_10k_ms"),
        std::pair(TextEdge::shadow, "transcript_draft_shaded_10k_ms")}) {
    stage.inputs.style.edge = edge;
    stage.inputs.drafts.clear();
    stage.view.update(stage.inputs, kAdded);
    stage.rest();
    bench::report(figure, quantile(stage.measure(300, growDraft), 0.5), "ms");
  }

  const auto styles = stage.measure(60, [&](int i) {
    stage.inputs.style =
        standardStyle(allPanelSets[static_cast<std::size_t>(i) % allPanelSets.size()]);
    stage.view.update(stage.inputs, kAdded);
  });
  bench::report("panel_style_change_ms", quantile(styles, 0.95), "ms");
  stage.inputs.style = PanelStyle();
  stage.view.update(stage.inputs, kAdded);
  stage.rest();

  const auto resizes = stage.measure(
      60, [&](int i) { stage.view.resize(kPanelSize + QSize(i % 2 ? 3 * i : -i, i)); });
  bench::report("transcript_resize_10k_ms", quantile(resizes, 0.5), "ms");
  return 0;
}
