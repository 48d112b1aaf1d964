// SPDX-License-Identifier: GPL-3.0-or-later
// Eight hours of captions in simulated time, with a visible panel, translation and automatic
// saving. At the end the file and the panel must contain all lines of the model.
#include "measure.h"
#include "model/session_file/session_file.h"
#include "ui/caption/panel_stage.h"
#include "ui/caption/selectable_transcript_text_view.h"
#include "ui/caption/transcript_view.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <QApplication>
#include <QFile>

using namespace velun;
using bench::heapBytes;
using bench::processorSecondsOf;
using bench::report;
using test::PanelStage;

namespace {

constexpr int kChunks = 20;
constexpr int kLinesPerChunk = 500;
constexpr std::chrono::milliseconds kLineTime(2880);
/// The first chunk, which includes one-time initialization, does not count.
constexpr int kCompared = 5;

void speak(PanelStage& stage, int number) {
  const QString text =
      QStringLiteral("This is what was said in line number %1 of the long talk.").arg(number);
  for (const int length : {20, 40}) {
    stage.draft(text.left(length));
    QCoreApplication::processEvents();
  }
  stage.final(text);
  test::settle();
  stage.clock.advance(kLineTime);
  stage.takeSignals();
}

struct Day {
  /// CPU seconds of each chunk of lines.
  std::vector<double> seconds;
  /// Bytes on the heap after each chunk.
  std::vector<double> heap;
};

Day captionForADay(PanelStage& stage) {
  Day day;
  for (int chunk = 0; chunk < kChunks; ++chunk) {
    day.seconds.push_back(processorSecondsOf([&stage, chunk] {
      for (int line = 0; line < kLinesPerChunk; ++line) {
        speak(stage, chunk * kLinesPerChunk + line);
      }
    }));
    day.heap.push_back(heapBytes());
  }
  return day;
}

/// The fastest of a day's first chunks, in microseconds per line.
double atStart(const Day& day) {
  const auto begin = day.seconds.begin() + 1;
  return *std::min_element(begin, begin + kCompared) / kLinesPerChunk * 1e6;
}

double atEnd(const Day& day) {
  return *std::min_element(day.seconds.end() - kCompared, day.seconds.end()) / kLinesPerChunk * 1e6;
}

void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "At the end of the day, %s\n", what);
  std::exit(1);
}

void checkWhatIsShown(const PanelStage& stage) {
  QStringList expected;
  for (const Line& line : stage.model->lines()) {
    require(line.translations.size() == 1, "a line is not translated");
    expected << line.text << line.translations.begin()->second;
  }
  const QTextDocument* shown = stage.view->transcript().textView().document();
  require(shown->toPlainText() == expected.join(u'\n'), "the panel shows something else");
}

void checkWhatIsSaved(const PanelStage& stage) {
  QFile file(stage.model->savedURL().value_or(QUrl()).toLocalFile());
  require(file.open(QIODevice::ReadOnly), "there is no file");
  require(file.readAll() == encodeSession(stage.model->session()), "the file holds something else");
}

std::unique_ptr<PanelStage> makeStage(bool saves) {
  auto stage = std::make_unique<PanelStage>([saves](AppSettings& settings) {
    settings.setTranslate(true);
    settings.setTargetID("ko");
    settings.setAutoSaveSessions(saves);
  });
  stage->translation.translate = [](const QString& text) {
    return QStringLiteral("번역: ") + text;
  };
  stage->controller->show();
  stage->start();
  return stage;
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  {
    const auto stage = makeStage(false);
    const Day day = captionForADay(*stage);
    checkWhatIsShown(*stage);
    report("day_slowdown", atEnd(day) / atStart(day), "ratio");
    const double firstHalf = day.heap[kChunks / 2 - 1] - day.heap.front();
    const double secondHalf = day.heap.back() - day.heap[kChunks / 2];
    report("day_growth_trend", secondHalf / firstHalf, "ratio");
    report("day_line_kib",
           (day.heap.back() - day.heap.front()) / ((kChunks - 1) * kLinesPerChunk) / 1024, "KiB");
  }
  const auto stage = makeStage(true);
  const Day day = captionForADay(*stage);
  checkWhatIsShown(*stage);
  checkWhatIsSaved(*stage);
  report("day_saved_line_start_us", atStart(day), "us");
  report("day_saved_line_end_us", atEnd(day), "us");
  stage->stop();
  checkWhatIsSaved(*stage);
  return 0;
}
