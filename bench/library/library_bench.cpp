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
#include <QTemporaryDir>

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

/// How long each keystroke takes.
std::vector<double> keystrokes(SessionSearch& search, const QString& typed) {
  if (!search.matches(typed)) waitFor(&search, &SessionSearch::ready);
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
    window.emplace(library, settings, HistoryActions(), clock, nullptr);
    window->show();
    QCoreApplication::processEvents();
    waitFor(&library, &HistoryViewModel::reloaded);
    QCoreApplication::processEvents();
  });
  bench::report("library_open_window_ms", opening, "ms");
}

void measureTenThousand() {
  const QTemporaryDir folder;
  writeLibrary(folder.path(), 10'000);
  SessionStore store;
  store.directory = QUrl::fromLocalFile(folder.path());
  HistoryViewModel library(store, [](const QUrl&) {});
  const auto list = [&library] {
    library.reload();
    waitFor(&library, &HistoryViewModel::reloaded);
  };
  // The first listing reads every file; the later ones read those that have changed, of which
  // there are none once all files are older than the steps in which file systems count time.
  bench::report("library_list_10k_ms", bench::millisecondsOf(list), "ms");
  list();
  bench::report("library_list_again_10k_ms", bench::medianMilliseconds(3, list), "ms");
  bench::report("library_list_10k_mb", bench::heapBytes() / 1e6, "MB");
  SessionSearch search;
  search.setSessions(library.sessions());
  std::vector<double> times = keystrokes(search, kSentence);
  std::ranges::copy(keystrokes(search, kCommonWords), std::back_inserter(times));
  bench::report("library_search_10k_ms", bench::median(times), "ms");
  bench::report("library_search_10k_max_ms", std::ranges::max(times), "ms");
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  measureThousand();
  measureTenThousand();
  return 0;
}
