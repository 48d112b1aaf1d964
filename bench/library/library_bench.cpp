// SPDX-License-Identifier: GPL-3.0-or-later
// Measures a keystroke in the search of saved sessions, listing them, and opening their window.
#include "measure.h"
#include "model/session_file/session_file.h"
#include "platform/foundation/system_clock.h"
#include "settings/app_settings.h"
#include "ui/library/history_view_model.h"
#include "ui/library/history_window_controller.h"
#include "ui/library/session_search.h"

#include <optional>
#include <QApplication>
#include <QEventLoop>
#include <QFileInfo>
#include <QTemporaryDir>
#include <thread>

using namespace velun;

namespace {

constexpr int kLines = 200;

CaptionSession makeSession(int number) {
  CaptionSession session;
  session.startedAt = currentInstant() - std::chrono::hours(number);
  for (int i = 0; i < kLines; ++i) {
    Line line;
    line.time = session.startedAt + std::chrono::seconds(5 * i);
    line.text = QStringLiteral("Line %1 of session %2 tells of the river and the people beside it.")
                    .arg(i)
                    .arg(number);
    line.sourceLanguage = QStringLiteral("en_US");
    line.translations[QStringLiteral("ko")] =
        QStringLiteral("강과 그 옆에 사는 사람들에 대한 %1번째 줄입니다.").arg(i);
    session.lines.push_back(line);
  }
  return session;
}

void writeLibrary(const QString& folder, int sessions) {
  for (int i = 0; i < sessions; ++i) {
    QFile file(folder + QStringLiteral("/%1.json").arg(i));
    if (file.open(QFile::WriteOnly)) file.write(encodeSession(makeSession(i)));
  }
}

template <class Sender>
void waitFor(const Sender* sender, void (Sender::*signal)()) {
  QEventLoop loop;
  QObject::connect(sender, signal, &loop, &QEventLoop::quit);
  loop.exec();
}

/// How long each keystroke takes, while files are read for the ones before.
std::vector<double> keystrokes(SessionSearch& search, const QString& typed) {
  std::vector<double> times;
  for (qsizetype length = 1; length <= typed.size(); ++length) {
    times.push_back(bench::millisecondsOf([&] { search.matches(typed.left(length)); }));
  }
  return times;
}

const auto kSentence = QStringLiteral("nobody wrote this sentence");
/// All sessions hold all of it but for its end.
const auto kCommonWords = QStringLiteral("tells of the river and the mountain");

void measureThousand() {
  const QTemporaryDir folder;
  writeLibrary(folder.path(), 1000);
  SessionStore store;
  store.directory = QUrl::fromLocalFile(folder.path());
  HistoryViewModel library(store, [](const QUrl&) {});
  library.reload();
  waitFor(&library, &HistoryViewModel::reloaded);

  SessionSearch search;
  search.setSessions(library.sessions());
  bench::report("library_search_ms", bench::median(keystrokes(search, kSentence)), "ms");

  AppSettings settings;
  SystemClock clock;
  std::optional<HistoryWindowController> window;
  const double opening = bench::millisecondsOf([&] {
    window.emplace(library, settings, HistoryActions(), clock);
    window->show();
    QCoreApplication::processEvents();
    waitFor(&library, &HistoryViewModel::reloaded);
    QCoreApplication::processEvents();
  });
  bench::report("library_open_window_ms", opening, "ms");
}

void measureTenThousand() {
  const QTemporaryDir folder;
  const QTemporaryDir cache;
  writeLibrary(folder.path(), 10'000);
  SessionStore store;
  store.directory = QUrl::fromLocalFile(folder.path());
  store.indexFile = cache.filePath(QStringLiteral("sessions.index"));
  // Until all files are older than the steps in which file systems count time.
  std::this_thread::sleep_for(std::chrono::seconds(4));
  std::optional<HistoryViewModel> library;
  const auto list = [&library] {
    library->reload();
    waitFor(&*library, &HistoryViewModel::reloaded);
  };
  const auto start = [&library, &store] {
    library.reset();
    library.emplace(store, [](const QUrl&) {});
  };
  // Without an index every file is read, and the index is written.
  start();
  bench::report("library_list_10k_ms", bench::millisecondsOf(list), "ms");
  start();
  const double before = bench::heapBytes();
  bench::report("library_list_10k_indexed_ms", bench::millisecondsOf(list), "ms");
  bench::report("library_list_again_10k_ms", bench::medianMilliseconds(3, list), "ms");
  bench::report("library_list_10k_mb", (bench::heapBytes() - before) / 1e6, "MB");
  const auto indexBytes = static_cast<double>(QFileInfo(store.indexFile).size());
  bench::report("library_index_10k_mb", indexBytes / 1e6, "MB");
  SessionSearch search;
  search.setSessions(library->sessions());
  std::vector<double> times = keystrokes(search, kSentence);
  std::ranges::copy(keystrokes(search, kCommonWords), std::back_inserter(times));
  bench::report("library_search_10k_ms", bench::median(times), "ms");
  bench::report("library_search_10k_max_ms", std::ranges::max(times), "ms");
  // Every session holds this, so every file is read.
  search.forget();
  const double exact = bench::millisecondsOf([&search] {
    search.matches(kCommonWords.left(kCommonWords.indexOf(QStringLiteral("mountain"))));
    waitFor(&search, &SessionSearch::ready);
  });
  bench::report("library_search_10k_exact_ms", exact, "ms");
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  measureThousand();
  measureTenThousand();
  return 0;
}
