// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/student/student_engine.h"

#include "platform/foundation/failure.h"
#include "platform/translation/support/toy_models.h"
#include "support/suite.h"

#include <QTest>

using namespace velun;
using namespace velun::test;

Q_DECLARE_METATYPE(velun::test::ToyVariant)

/// Compares the engine with stored translations of the reference engine. student_reference_test
/// runs the reference engine itself.
class StudentEngineTest final : public Suite {
  Q_OBJECT

 private Q_SLOTS:
  void translatesLikeTheReference_data() {
    QTest::addColumn<ToyVariant>("variant");
    for (const ToyVariant& variant : toyVariants()) {
      QTest::newRow(qPrintable(variant.name())) << variant;
    }
  }

  void translatesLikeTheReference() {
    QFETCH(ToyVariant, variant);
    const QStringList golden = toyLines(QStringLiteral("golden/%1.txt").arg(variant.name()));
    const QStringList sentences = toySentences(variant);
    QCOMPARE(golden.size(), sentences.size());
    const StudentEngine engine(filesOf(variant, folder_));
    // Every fourth sentence keeps this test quick.
    qsizetype tried = 0;
    qsizetype equal = 0;
    for (qsizetype i = 0; i < sentences.size(); i += 4) {
      const QString translation = engine.translateSentence(sentences[i]);
      ++tried;
      if (translation == withoutOuterSpace(golden[i])) {
        ++equal;
      } else if (variant.numbers == ToyVariant::Numbers::floats) {
        QCOMPARE(translation, withoutOuterSpace(golden[i]));
      }
    }
    QVERIFY(tried >= 125);
    QVERIFY2(equal * 100 >= tried * 99, qPrintable(QString::number(tried - equal)));
  }

  void blankTextStaysEmpty() {
    const StudentEngine engine(toyFiles(QStringLiteral("enko")));
    QCOMPARE(engine.translateSentence(QString()), QString());
    QCOMPARE(engine.translateSentence(QStringLiteral(" \t\u00A0\n")), QString());
  }

  void surroundingSpaceIsIgnored() {
    const StudentEngine engine(toyFiles(QStringLiteral("enes")));
    QCOMPARE(engine.translateSentence(QStringLiteral("  Maria sees the red house. \n")),
             engine.translateSentence(QStringLiteral("Maria sees the red house.")));
  }

  void translatesIntoAnotherScript() {
    const StudentEngine engine(toyFiles(QStringLiteral("enko")));
    QCOMPARE(engine.translateSentence(QStringLiteral("Maria sees the red house.")),
             QStringLiteral("마리아는 빨간 집 봅니다."));
  }

  void stopsOnRequest() {
    const StudentEngine engine(toyFiles(QStringLiteral("enes")));
    std::stop_source stop;
    stop.request_stop();
    QVERIFY_EXCEPTION_THROWN(
        engine.translateSentence(QStringLiteral("Maria sees the red house."), stop.get_token()),
        Cancelled);
  }

 private:
  QTemporaryDir folder_;
};

QTEST_GUILESS_MAIN(StudentEngineTest)
#include "student_engine_test.moc"
