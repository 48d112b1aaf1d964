// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/localization.h"
#include "platform/foundation/failure.h"
#include "platform/speech/built_in/built_in_backend.h"
#include "platform/speech/model_copy.h"
#include "platform/speech/neural_runs.h"
#include "support/installed_recognizer.h"
#include "support/suite.h"

#include <cerrno>
#include <cstring>
#include <QTemporaryFile>
#include <unistd.h>

using namespace velun;
using namespace velun::test;

namespace {

enum class Damage { missing, empty, halved, shortened, changed, oneBit };

/// Everything that the process and its children write to the standard error.
class StandardError {
 public:
  StandardError() : before_(dup(STDERR_FILENO)) {
    if (!file_.open()) qFatal("no temporary file");
    dup2(file_.handle(), STDERR_FILENO);
  }
  ~StandardError() {
    dup2(before_, STDERR_FILENO);
    close(before_);
  }
  QByteArray text() {
    file_.seek(0);
    return file_.readAll();
  }

 private:
  QTemporaryFile file_;
  int before_;
};

void damage(const ModelCopy& copy, const QString& name, Damage how) {
  if (how == Damage::missing) return copy.remove(name);
  QByteArray bytes = copy.content(name);
  if (how == Damage::empty) bytes.clear();
  if (how == Damage::halved) bytes.truncate(bytes.size() / 2);
  if (how == Damage::shortened) bytes.chop(1);
  if (how == Damage::changed) bytes = withChangedBytes(bytes, 200);
  if (how == Damage::oneBit)
    bytes[bytes.size() / 3] = static_cast<char>(bytes[bytes.size() / 3] ^ 4);
  copy.replace(name, bytes);
}

std::unique_ptr<RecognizerBackend> recognizer(const ModelCopy& copy) {
  return test::installedRecognizer(BuiltInRecognizerProvider(copy.files()), "en_US")();
}

/// The failure of loading; empty when it succeeds.
QString loadFailure(const ModelCopy& copy) {
  try {
    recognizer(copy)->load();
  } catch (const Failure& failure) {
    return failure.errorDescription();
  }
  return {};
}

int mutations(int standard) {
  const int given = qEnvironmentVariableIntValue("VELUN_MUTATIONS");
  return given > 0 ? given : standard;
}

}  // namespace

Q_DECLARE_METATYPE(Damage)

/// The built-in recognizer with damaged files.
class BuiltInDamageTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void damagedFileIsNamed_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<Damage>("how");
    const auto row = [](const char* name, Damage how, const char* title) {
      QTest::newRow(qPrintable(QString("%1 %2").arg(name, title))) << QString(name) << how;
    };
    // On each of these libvosk ends the process, decodes forever, or does not notice anything.
    row("graph/disambig_tid.int", Damage::missing, "missing");
    row("graph/disambig_tid.int", Damage::empty, "empty");
    row("graph/disambig_tid.int", Damage::halved, "halved");
    row("graph/disambig_tid.int", Damage::changed, "changed");
    row("graph/disambig_tid.int", Damage::shortened, "a byte short");
    row("ivector/splice.conf", Damage::empty, "empty");
    row("ivector/splice.conf", Damage::halved, "halved");
    row("graph/HCLr.fst", Damage::changed, "changed");
    row("graph/HCLr.fst", Damage::shortened, "a byte short");
    row("conf/model.conf", Damage::empty, "empty");
    row("conf/model.conf", Damage::halved, "halved");
    row("conf/mfcc.conf", Damage::empty, "empty");
    row("ivector/final.ie", Damage::missing, "missing");
    row("ivector/final.mat", Damage::shortened, "a byte short");
    row("graph/phones/word_boundary.int", Damage::missing, "missing");
    row("am/final.mdl", Damage::oneBit, "with one bit changed");
    row("graph/Gr.fst", Damage::oneBit, "with one bit changed");
    row("SHA256SUMS", Damage::missing, "missing");
    row("SHA256SUMS", Damage::empty, "empty");
    row("libvosk.so", Damage::halved, "halved");
    row("libvosk.so", Damage::oneBit, "with one bit changed");
    row("libvosk.so", Damage::missing, "missing");
  }
  void damagedFileIsNamed() {
    QFETCH(QString, name);
    QFETCH(Damage, how);
    const ModelCopy copy;
    damage(copy, name, how);
    QCOMPARE(loadFailure(copy),
             QString("A file of the speech recognizer is missing or damaged (%1). Install Velun "
                     "again.")
                 .arg(name));
  }

  void unreadableFileIsNamedWithTheReason_data() {
    QTest::addColumn<QString>("name");
    for (const char* name : {"am/final.mdl", "libvosk.so"}) QTest::newRow(name) << QString(name);
  }
  void unreadableFileIsNamedWithTheReason() {
    QFETCH(QString, name);
    const ModelCopy copy;
    copy.remove(name);
    // Opening a loop of links fails for every user, also for the superuser.
    QVERIFY(QFile::link(QFileInfo(name).fileName(), copy.files().model + u'/' + name));
    QCOMPARE(loadFailure(copy),
             QString("A file of the speech recognizer cannot be read (%1: %2). Check the "
                     "permissions of the file and its disk, or install Velun again.")
                 .arg(name, std::strerror(ELOOP)));
  }

  void damageIsToldInKorean() {
    const ModelCopy copy;
    damage(copy, "am/final.mdl", Damage::missing);
    Localization::shared().setLanguage(AppLanguage::korean);
    const QString failure = loadFailure(copy);
    Localization::shared().setLanguage(AppLanguage::english);
    QVERIFY2(failure.contains("am/final.mdl") && failure.contains("손상"), qPrintable(failure));
  }

  void flippedBitIsFound() {
    const ModelCopy copy;
    std::mt19937 random(20261122);
    for (int i = 0; i < mutations(20); ++i) {
      const QString name = copy.names()[random() % static_cast<unsigned>(copy.names().size())];
      const QByteArray before = copy.content(name);
      const auto place = static_cast<qsizetype>(random() % static_cast<std::size_t>(before.size()));
      QByteArray flipped = before;
      flipped[place] = static_cast<char>(flipped[place] ^ (1 << random() % 8));
      copy.replace(name, flipped);
      const QString failure = loadFailure(copy);
      QVERIFY2(failure.contains(name),
               qPrintable(QString("%1 at %2: %3").arg(name).arg(place).arg(failure)));
      copy.replace(name, before);
    }
  }

  /// Files that are damaged in a way that the sums do not show, as when they are replaced.
  void damageBehindTheCheckEndsOnlyTheRun_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<Damage>("how");
    QTest::newRow("a crash while decoding") << "graph/disambig_tid.int" << Damage::empty;
    QTest::newRow("an assertion while loading") << "ivector/splice.conf" << Damage::empty;
    QTest::newRow("messages while loading") << "graph/HCLr.fst" << Damage::halved;
    QTest::newRow("no recognizer") << "ivector/final.ie" << Damage::empty;
    QTest::newRow("no model") << "am/final.mdl" << Damage::halved;
  }
  void damageBehindTheCheckEndsOnlyTheRun() {
    QFETCH(QString, name);
    QFETCH(Damage, how);
    const ModelCopy copy;
    damage(copy, name, how);
    copy.accept(name);
    QString failure;
    QByteArray printed;
    {
      StandardError errors;
      try {
        const auto backend = recognizer(copy);
        backend->load();
        feed(*backend, clip("0880"));
        backend->finalize();
      } catch (const Failure& error) {
        failure = error.errorDescription();
      }
      printed = errors.text();
    }
    QVERIFY2(failure.startsWith("The speech recognizer "), qPrintable(failure));
    QCOMPARE(printed, QByteArray());
  }

  void unknownSettingIsNotPrinted() {
    const ModelCopy copy;
    copy.replace("conf/model.conf", copy.content("conf/model.conf") + "--unknown=1\n");
    copy.accept("conf/model.conf");
    StandardError errors;
    QVERIFY(!loadFailure(copy).isEmpty());
    QCOMPARE(errors.text(), QByteArray());
  }
};

QTEST_GUILESS_MAIN(BuiltInDamageTest)
#include "built_in_damage_test.moc"
