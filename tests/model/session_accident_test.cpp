// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_file/session_file.h"
#include "model/session_store.h"
#include "platform/foundation/synced_copy.h"
#include "support/saved_sessions.h"
#include "support/session_samples.h"
#include "support/suite.h"

#include <atomic>
#include <csignal>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <random>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace velun;

namespace {

/// A number in memory shared with a child process.
class SharedCount {
 public:
  SharedCount()
      : memory_(mmap(nullptr, sizeof(std::atomic<int>), PROT_READ | PROT_WRITE,
                     MAP_SHARED | MAP_ANONYMOUS, -1, 0)),
        count_(new (memory_) std::atomic<int>(0)) {}
  ~SharedCount() { munmap(memory_, sizeof(std::atomic<int>)); }
  Q_DISABLE_COPY_MOVE(SharedCount)
  std::atomic<int>& operator*() const { return *count_; }

 private:
  void* memory_;
  std::atomic<int>* count_;
};

/// Saves the session with the number of the save as its title, while a thread brings its file onto
/// the disk, until the process is killed.
[[noreturn]] void saveUntilKilled(const SessionStore& store, CaptionSession session,
                                  std::atomic<int>& saved) {
  SessionEncoder encoder;
  SyncedCopy copy;
  const auto protect = [&copy](const QString& path) {
    copy.protect(path);
  };
  std::jthread syncing;
  while (true) {
    const int next = saved + 1;
    session.title = QString::number(next);
    try {
      store.save(session, &encoder, protect);
    } catch (...) {
      _exit(1);
    }
    saved = next;
    if (syncing.joinable()) continue;
    syncing = std::jthread([&copy] {
      while (true) copy.update();
    });
  }
}

QStringList hiddenFiles(const QString& folder) {
  return QDir(folder).entryList({".*"}, QDir::Files | QDir::Hidden);
}

}  // namespace

class SessionAccidentTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void killsDuringSavesNeverLeaveAPartialFile() {
    const QTemporaryDir folder;
    const SessionStore store{QUrl::fromLocalFile(folder.path())};
    const CaptionSession session = test::longSession(300);
    const QUrl url = store.save(session);
    std::mt19937 random(20250301);
    std::uniform_int_distribution<int> microseconds(0, 3000);
    SharedCount saved;
    qsizetype interrupted = 0;
    for (int kill = 0; kill < 1000; ++kill) {
      const int before = *saved;
      const pid_t child = fork();
      QVERIFY(child >= 0);
      if (child == 0) saveUntilKilled(store, session, *saved);
      // Killed at a random moment after its first save.
      while (*saved == before && waitpid(child, nullptr, WNOHANG) == 0) usleep(50);
      usleep(static_cast<useconds_t>(microseconds(random)));
      ::kill(child, SIGKILL);
      int status = 0;
      QCOMPARE(waitpid(child, &status, 0), child);
      QVERIFY(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);

      const int confirmed = *saved;
      const CaptionSession read = test::readSession(url);  // throws if it is incomplete
      const int found = read.title.toInt();
      QVERIFY2(found == confirmed || found == confirmed + 1, qPrintable(read.title));
      QVERIFY(read.lines.size() == session.lines.size());
      *saved = found;
      const QStringList left = hiddenFiles(folder.path());
      QVERIFY(left.size() <= 3);  // a write, a sync and the synced copy
      interrupted += left.filter(".velun-part").size();
    }
    // Otherwise the kills came between the saves and tested nothing.
    QVERIFY2(interrupted > 30, QByteArray::number(interrupted));
    QVERIFY(!hiddenFiles(folder.path()).isEmpty());
    QCOMPARE(test::listingOf(store).unreadableCount, 0);
    QCOMPARE(hiddenFiles(folder.path()), QStringList());
  }

  void nextSessionRemovesUnfinishedFiles() {
    const QTemporaryDir folder;
    const SessionStore store{QUrl::fromLocalFile(folder.path())};
    const QUrl url = store.save(test::sampleSession());
    const QString left = folder.filePath("." + url.fileName() + ".velun-part");
    QVERIFY(QFile::copy(url.toLocalFile(), left));
    CaptionSession next = test::sampleSession();
    next.id = QUuid::createUuid();
    store.save(next);
    QCOMPARE(hiddenFiles(folder.path()), QStringList());
    QCOMPARE(test::savedSessions(store).size(), 2u);
  }

  void fileSizeLimitIsAnErrorAndKeepsTheOldFile() {
    const QTemporaryDir folder;
    const SessionStore store{QUrl::fromLocalFile(folder.path())};
    const CaptionSession small = test::sampleSession();
    const QUrl url = store.save(small);
    CaptionSession large = small;
    large.lines = test::longSession(200).lines;

    rlimit before{};
    QCOMPARE(getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto ignored = std::signal(SIGXFSZ, SIG_IGN);
    rlimit limited = before;
    limited.rlim_cur = 16'384;
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &limited), 0);
    QString text;
    try {
      store.save(large);
    } catch (const SessionError& error) {
      text = error.errorDescription();
    }
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, ignored);

    QCOMPARE(text, "“" + url.fileName() + "” is too large for this file system.");
    QVERIFY(test::readSession(url) == small);
    QCOMPARE(hiddenFiles(folder.path()), QStringList());
    store.save(large);
    QVERIFY(test::readSession(url) == large);
  }

  // Runs this program again, with a small private file system.
  void fullDiskIsAnErrorAndKeepsTheOldFile() {
    const QTemporaryDir folder;
    QProcess inside;
    QStringList arguments = {"--mount", "--propagation", "private"};
    if (geteuid() != 0) arguments += {"--user", "--map-root-user"};
    arguments += {"sh", "-c", "mount -t tmpfs -o size=1m none \"$1\" && exec \"$0\" --full \"$1\"",
                  QCoreApplication::applicationFilePath(), folder.path()};
    inside.start("unshare", arguments);
    QVERIFY2(inside.waitForFinished(60'000), "unshare (util-linux) is needed");
    QVERIFY2(inside.exitCode() == 0, inside.readAllStandardError());
    QCOMPARE(inside.readAllStandardOutput(), QByteArray("the old file is whole\n"));
  }

 public:
  /// Runs in the second process: fills the disk, saves and checks. Returns the exit code.
  static int onAFullDisk(const QString& folder) {
    const SessionStore store{QUrl::fromLocalFile(folder)};
    CaptionSession session = test::longSession(500);
    const QUrl url = store.save(session);
    QFile filler(folder + "/filler");
    if (!filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) return 2;
    while (filler.write(QByteArray(4096, 'x')) == 4096) {
    }
    const CaptionSession old = session;
    session.lines.push_back(Line());
    try {
      store.save(session);
      return fail("a save on a full disk succeeded");
    } catch (const SessionError& error) {
      const QString expected =
          QStringLiteral("There is not enough disk space to write “%1”.").arg(url.fileName());
      if (error.errorDescription() != expected) return fail(qPrintable(error.errorDescription()));
    }
    if (test::readSession(url) != old) return fail("the old file changed");
    if (!hiddenFiles(folder).isEmpty()) return fail("a part of the new file stayed");
    filler.resize(0);
    store.save(session);
    if (test::readSession(url) != session) return fail("saving with room again failed");
    std::puts("the old file is whole");
    return 0;
  }

 private:
  static int fail(const char* what) {
    std::fputs(what, stderr);
    return 1;
  }
};

int main(int argc, char* argv[]) {
  QCoreApplication application(argc, argv);
  const QStringList arguments = QCoreApplication::arguments();
  if (arguments.size() == 3 && arguments[1] == "--full") {
    return SessionAccidentTest::onAFullDisk(arguments[2]);
  }
  SessionAccidentTest test;
  return QTest::qExec(&test, argc, argv);
}
#include "session_accident_test.moc"
