// SPDX-License-Identifier: GPL-3.0-or-later
// Speed and memory of a translation model of the largest size, with random weights, compared with
// the reference engine on the same files.
#include "platform/translation/student/student_engine.h"
#include "platform/translation/support/made_up_model.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

using namespace velun;

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kSentences = 10;
constexpr int kTokens = 20;
constexpr int kRepeat = 5;

double millisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// The resident memory of this process in MiB.
double residentMegabytes() {
  QFile status(QStringLiteral("/proc/self/status"));
  if (!status.open(QIODevice::ReadOnly)) return 0;
  for (const QByteArray& line : status.readAll().split('\n')) {
    if (line.startsWith("VmRSS:")) {
      return line.mid(6).trimmed().split(' ').front().toDouble() / 1024;
    }
  }
  return 0;
}

// The mean of the best time of each sentence, in ms.
double measure(const StudentEngine& engine, const QStringList& sentences) {
  double sum = 0;
  for (const QString& sentence : sentences) {
    double best = 1e9;
    for (int i = 0; i < kRepeat; ++i) {
      const auto start = Clock::now();
      if (engine.translateSentence(sentence).isEmpty()) qFatal("Nothing was translated");
      best = std::min(best, millisecondsSince(start));
    }
    sum += best;
  }
  return sum / static_cast<double>(sentences.size());
}

double measureReference(const StudentFiles& files, const QStringList& sentences) {
  QProcess node;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("REPEAT"), QString::number(kRepeat));
  environment.insert(QStringLiteral("LENGTH_FACTOR"), QStringLiteral("1.0"));
  node.setProcessEnvironment(environment);
  node.start(
      QStringLiteral("node"),
      {QStringLiteral(VELUN_REFERENCE_SCRIPT), QStringLiteral(VELUN_REFERENCE_PACKAGE), files.model,
       files.shortlist, QStringLiteral("int8shiftAlphaAll"), files.sourceVocabulary});
  node.write((sentences.join(u'\n') + u'\n').toUtf8());
  node.closeWriteChannel();
  constexpr int kTimeoutMs = 300'000;
  if (!node.waitForFinished(kTimeoutMs)) return 0;
  const QList<QByteArray> words = node.readAllStandardError().simplified().split(' ');
  const qsizetype at = words.indexOf("ms-per-sentence");
  return at < 0 || at + 1 >= words.size() ? 0 : words[at + 1].toDouble();
}

// Writes it in another process, which would otherwise add to the memory of this one.
void writeModel(const QString& folder) {
  QProcess writer;
  writer.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--write"), folder});
  if (!writer.waitForFinished(-1) || writer.exitCode() != 0) qFatal("No model was written");
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  const test::MadeUpModel model = test::MadeUpModel::base();
  if (application.arguments().value(1) == QStringLiteral("--write")) {
    model.write(application.arguments().value(2));
    return 0;
  }

  const QTemporaryDir folder;
  writeModel(folder.path());
  const StudentFiles files = test::MadeUpModel::files(folder.path());
  // Translations have as many tokens as their source.
  const StudentEngine::Limits limits{.lengthFactor = 1.0F};
  const auto start = Clock::now();
  const StudentEngine engine(files, limits);
  const double load = millisecondsSince(start);

  const QStringList sentences = model.sentences(kSentences, kTokens);
  measure(engine, sentences.mid(0, 1));
  const double resident = residentMegabytes();
  const double own = measure(engine, sentences);
  std::printf("translate_base_ms_per_sentence %.2f ms\n", own);
  std::printf("translate_load_ms %.1f ms\n", load);
  std::printf("translate_rss_mb %.1f MB\n", resident);
  const double fileSize = static_cast<double>(QFile(files.model).size()) / (1024 * 1024);
  std::fprintf(stderr, "model file %.1f MB, goal for memory %.1f MB\n", fileSize,
               1.5 * fileSize + 30);
  const double reference = measureReference(files, sentences);
  if (reference == 0) {
    std::fprintf(stderr, "The reference engine did not run; scripts/setup installs it.\n");
    return 1;
  }
  std::fprintf(stderr, "reference %.2f ms a sentence\n", reference);
  std::printf("translate_vs_reference %.2f ratio\n", reference / own);
  return 0;
}
