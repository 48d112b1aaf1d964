// SPDX-License-Identifier: GPL-3.0-or-later
#include "measure.h"
#include "model/listing/session_listing.h"
#include "platform/foundation/synced_copy.h"
#include "support/session_samples.h"

#include <QFileInfo>
#include <QTemporaryDir>

using namespace velun;
using namespace velun::bench;

namespace {

/// A folder in memory if the system has one.
QString folderTemplate() {
  const QString memory = QStringLiteral("/dev/shm");
  return (QFileInfo(memory).isWritable() ? memory : QDir::tempPath()) + "/velun-bench-XXXXXX";
}

/// Saves the session after each of 100 new lines, as live captions do.
double rewriteMilliseconds(const SessionStore& store) {
  CaptionSession session = test::longSession(10'000);
  const std::vector<Line> more = test::longSession(100).lines;
  SessionEncoder encoder;
  SyncedCopy copy;
  const auto protect = [&copy](const QString& path) {
    copy.protect(path);
  };
  store.save(session, &encoder, protect);
  std::vector<double> values;
  for (const Line& line : more) {
    session.lines.push_back(line);
    values.push_back(millisecondsOf([&] { store.save(session, &encoder, protect); }));
  }
  return median(values);
}

/// Saves the session after each of 100 translations of lines throughout the session.
double translatedMilliseconds(const SessionStore& store) {
  CaptionSession session = test::longSession(10'000);
  SessionEncoder encoder;
  SyncedCopy copy;
  const auto protect = [&copy](const QString& path) {
    copy.protect(path);
  };
  store.save(session, &encoder, protect);
  std::vector<double> values;
  for (std::size_t i = 0; i < 100; ++i) {
    const std::size_t line = i * 97;
    session.lines[line].translations["en"] = "One more translation of this line.";
    encoder.lineChanged(line);
    values.push_back(millisecondsOf([&] { store.save(session, &encoder, protect); }));
  }
  return median(values);
}

double listMilliseconds(const SessionStore& store) {
  CaptionSession session = test::longSession(200);
  for (int i = 0; i < 1000; ++i) {
    session.id = QUuid::createUuid();
    session.startedAt += std::chrono::minutes(37);
    store.save(session);
  }
  return medianMilliseconds(5, [&] {
    const SessionListing listing = listSessions(store, {}, defaultSessionTitle(), {});
    if (listing.sessions.size() != 1000 || listing.unreadableCount != 0) std::abort();
  });
}

}  // namespace

int main() {
  const QTemporaryDir live(folderTemplate());
  const SessionStore store{QUrl::fromLocalFile(live.path())};
  report("session_rewrite_10k_ms", rewriteMilliseconds(store), "ms");
  report("session_rewrite_10k_translation_ms", translatedMilliseconds(store), "ms");
  const QTemporaryDir library(folderTemplate());
  report("library_list_1000_ms", listMilliseconds({QUrl::fromLocalFile(library.path())}), "ms");
}
