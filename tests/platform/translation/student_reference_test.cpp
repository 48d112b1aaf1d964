// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/support/toy_models.h"
#include "support/suite.h"

#include <QFile>
#include <QProcess>
#include <QTest>

using namespace velun;
using namespace velun::test;

Q_DECLARE_METATYPE(velun::test::ToyVariant)

/// Compares the engine with the reference engine on the same files. Also checks the translations
/// stored for student_engine_test; with VELUN_UPDATE_GOLDEN set it rewrites them.
class StudentReferenceTest final : public Suite {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    QVERIFY2(QFile::exists(package() + QStringLiteral("/worker/bergamot-translator-worker.wasm")),
             "The reference engine is not installed; scripts/setup installs it.");
  }

  void translatesLikeTheReference_data() {
    QTest::addColumn<ToyVariant>("variant");
    for (const ToyVariant& variant : toyVariants()) {
      QTest::newRow(qPrintable(variant.name())) << variant;
    }
  }

  void translatesLikeTheReference() {
    QFETCH(ToyVariant, variant);
    const StudentFiles files = filesOf(variant, folder_);
    const QStringList sentences = toySentences(variant);
    const QStringList expected = reference(variant, files, sentences);
    QCOMPARE(expected.size(), sentences.size());

    const QString golden = QStringLiteral("golden/%1.txt").arg(variant.name());
    if (qEnvironmentVariableIsSet("VELUN_UPDATE_GOLDEN")) {
      QFile file(QStringLiteral(VELUN_TEST_DATA "/") + golden);
      QVERIFY(file.open(QIODevice::WriteOnly));
      file.write((expected.join(u'\n') + u'\n').toUtf8());
    } else {
      QCOMPARE(expected, toyLines(golden));
    }

    const StudentEngine engine(files);
    qsizetype equalCount = 0;
    for (qsizetype i = 0; i < sentences.size(); ++i) {
      const QString translation = engine.translateSentence(sentences[i]);
      const bool equal = translation == withoutOuterSpace(expected[i]);
      if (!equal) {
        qInfo("%s", qPrintable(QStringLiteral("“%1”: “%2” instead of “%3”")
                                   .arg(sentences[i], translation, expected[i])));
      }
      if (variant.numbers == ToyVariant::Numbers::floats) QVERIFY(equal);
      equalCount += equal ? 1 : 0;
    }
    QVERIFY(sentences.size() >= 500);
    QVERIFY(equalCount * 100 >= sentences.size() * 99);
  }

 private:
  static QString package() {
    return QStringLiteral(VELUN_SOURCE "/node_modules/@browsermt/bergamot-translator");
  }

  static QStringList reference(const ToyVariant& variant, const StudentFiles& files,
                               const QStringList& sentences) {
    QStringList arguments{QStringLiteral(VELUN_REFERENCE_SCRIPT),
                          package(),
                          files.model,
                          files.shortlist.isEmpty() ? QStringLiteral("-") : files.shortlist,
                          variant.precision(),
                          files.sourceVocabulary};
    if (!files.targetVocabulary.isEmpty()) arguments << files.targetVocabulary;
    QProcess node;
    node.start(QStringLiteral("node"), arguments);
    node.write((sentences.join(u'\n') + u'\n').toUtf8());
    node.closeWriteChannel();
    constexpr int kTimeoutMs = 300'000;
    if (!node.waitForFinished(kTimeoutMs) || node.exitCode() != 0) {
      qWarning("The reference engine failed: %s", node.readAllStandardError().constData());
      return {};
    }
    QStringList lines = QString::fromUtf8(node.readAllStandardOutput()).split(u'\n');
    lines.removeLast();
    return lines;
  }

  QTemporaryDir folder_;
};

QTEST_GUILESS_MAIN(StudentReferenceTest)
#include "student_reference_test.moc"
