// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/app_stage.h"
#include "app/file_mutations.h"
#include "app/session_library.h"
#include "model/session_file/session_file.h"
#include "support/session_samples.h"
#include "support/suite.h"
#include "support/test_folder.h"
#include "ui/library/history_view_model.h"

#include <QDateTime>
#include <QMap>

using namespace velun;
using namespace velun::test;

namespace {

/// The files of a folder with their bytes and modification times.
QMap<QString, std::pair<QByteArray, QDateTime>> snapshot(const QString& folder) {
  QMap<QString, std::pair<QByteArray, QDateTime>> files;
  const auto kinds = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
  for (const QFileInfo& info : QDir(folder).entryInfoList(kinds)) {
    QFile file(info.filePath());
    files.insert(info.fileName(), {file.open(QIODevice::ReadOnly) ? file.readAll() : "unreadable",
                                   info.lastModified()});
  }
  return files;
}

/// The sessions in the open window and the shown ones.
struct OpenList {
  explicit OpenList(const HistoryViewModel& library)
      : files(library.openedFiles()),
        sessions(library.sessions().size()),
        selection(library.selection()) {}

  QList<QUrl> files;
  std::size_t sessions;
  std::optional<QUrl> selection;

  bool operator==(const OpenList&) const = default;
};

int numberFromEnvironment(const char* name, int otherwise) {
  bool isNumber = false;
  const int number = qEnvironmentVariableIntValue(name, &isNumber);
  return isNumber ? number : otherwise;
}

/// The program with three saved sessions, and a folder with files from elsewhere.
class Scene {
 public:
  Scene() {
    for (int i = 0; i < kSaved; ++i) {
      CaptionSession session = longSession(3);
      session.startedAt += std::chrono::hours(i);
      session.id = QUuid::createUuidV5(session.id, QString::number(i));
      stage_.store.save(session);
    }
    library().reload();
    wait();
    saved_ = snapshot(stage_.store.directory.toLocalFile());
  }

  /// Chooses the file in the dialog of the command, and checks everything that must hold after it.
  void open(const QString& name, const QByteArray& bytes) {
    elsewhere_.write(name, bytes);
    const auto others = snapshot(elsewhere_.path());
    const QUrl url = QUrl::fromLocalFile(elsewhere_.path(name));
    const OpenList before(library());
    const std::size_t errors = stage_.question.asked.size();
    stage_.chosenFile = url;
    stage_.perform(AppCommand::openSessionFile);
    wait();
    if (stage_.question.asked.size() == errors) {
      ++opened_;
      checkOpened(url, before);
    } else {
      QCOMPARE(stage_.question.asked.size(), errors + 1);
      checkRefused(before);
    }
    QVERIFY(snapshot(elsewhere_.path()) == others);
    QVERIFY(snapshot(stage_.store.directory.toLocalFile()) == saved_);
  }

  int opened() const { return opened_; }

 private:
  static constexpr int kSaved = 3;

  HistoryViewModel& library() { return stage_.coordinator().sessions().library(); }

  void wait() {
    QTRY_VERIFY_WITH_TIMEOUT(!library().isOpening() && !library().isReloading(), 60'000);
  }

  void checkOpened(const QUrl& url, const OpenList& before) {
    QCOMPARE(library().openedFiles(), before.files + QList<QUrl>{url});
    QCOMPARE(library().sessions().size(), before.sessions + 1);
    QCOMPARE(library().selection(), std::optional(url));
    QVERIFY(!library().error());
    // An opened session can be saved and read again.
    const QByteArray saved = encodeSession(library().selectedSession()->session);
    QCOMPARE(encodeSession(decodeSession(saved)), saved);
  }

  void checkRefused(const OpenList& before) {
    const Question& question = stage_.question.asked.back();
    QCOMPARE(question.message, QString("Couldn’t Complete the Action"));
    QVERIFY2(question.informativeText.size() > 10 && question.informativeText.endsWith(u'.'),
             qPrintable(question.informativeText));
    QVERIFY(!question.informativeText.contains(u'%'));
    QVERIFY(OpenList(library()) == before);
  }

  AppStage stage_;
  TestFolder elsewhere_;
  QMap<QString, std::pair<QByteArray, QDateTime>> saved_;
  int opened_ = 0;
};

}  // namespace

/// Damaged and hostile files are opened, or refused with a text that gives the reason, and nothing
/// else changes. VELUN_MUTATIONS and VELUN_MUTATION_SEED set their number and the seed.
class HostileSessionFilesTest final : public Suite {
  Q_OBJECT

  static std::vector<QByteArray> sessions() {
    CaptionSession compact = sampleSession();
    compact.title = "{\"lines\": []}";
    return {encodeSession(sampleSession()), encodeSession(longSession(12)),
            encodeSession(compact).simplified()};
  }

  static std::vector<QByteArray> transcripts() {
    return {
        "# 자막 세션 — 2024-11-02\n\n`20:15:03` Hello\n> 안녕\n> 반가워\n`20:15:04`\n`open\n> \n",
        "# 자막 세션 — 2024-11-02\r\n\r\n`09:00:00` One `two`\r\n"};
  }

 private Q_SLOTS:
  void theOriginalsAreOpened() {
    Scene scene;
    int number = 0;
    for (const QByteArray& bytes : sessions()) scene.open(QString("%1.json").arg(++number), bytes);
    for (const QByteArray& bytes : transcripts()) scene.open(QString("%1.md").arg(++number), bytes);
    QCOMPARE(scene.opened(), number);
  }

  void damagedFilesAreOpenedOrRefused() {
    const int count = numberFromEnvironment("VELUN_MUTATIONS", 300);
    const auto seed = static_cast<unsigned>(numberFromEnvironment("VELUN_MUTATION_SEED", 20250301));
    constexpr int kInOneScene = 50;
    FileMutations session(sessions(), seed);
    FileMutations transcript(transcripts(), seed + 1);
    int opened = 0;
    for (int done = 0; done < count; done += kInOneScene) {
      Scene scene;
      for (int i = 0; i < std::min(kInOneScene, count - done); ++i) {
        const bool isTranscript = i % 10 == 9;
        scene.open(QString::number(i) + (isTranscript ? ".md" : ".json"),
                   isTranscript ? transcript.next() : session.next());
        if (QTest::currentTestFailed()) {
          qInfo("Mutation %d of seed %u", done + i, seed);
          return;
        }
      }
      opened += scene.opened();
    }
    qInfo("%d files of seed %u: %d opened, %d refused", count, seed, opened, count - opened);
    // Some files are opened and some refused; otherwise the mutations would test nothing.
    QVERIFY(opened > count / 50 && opened < count * 9 / 10);
  }
};

QTEST_MAIN(HostileSessionFilesTest)
#include "hostile_session_files_test.moc"
