// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_codec.h"

#include "model/session_error.h"
#include "settings/localization.h"
#include "support/session_samples.h"
#include "support/suite.h"

#include <QFile>

using namespace velun;

namespace {

QByteArray example() {
  QFile file(QStringLiteral(VELUN_TEST_DATA "/example.json"));
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The example with one piece replaced.
QByteArray exampleWith(const QByteArray& piece, const QByteArray& replacement) {
  QByteArray bytes = example();
  const qsizetype at = bytes.indexOf(piece);
  if (at < 0) qFatal("the example has no such piece");
  return bytes.replace(at, piece.size(), replacement);
}

QString refusal(const QByteArray& bytes) {
  try {
    decodeSession(bytes, QStringLiteral("a.json"));
  } catch (const SessionError& error) {
    return error.errorDescription();
  }
  return QStringLiteral("read without a complaint");
}

}  // namespace

class SessionCodecTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void theExampleIsWrittenToTheByte() {
    QVERIFY(!example().isEmpty());
    QCOMPARE(encodeSession(test::sampleSession()), example());
  }

  void theExampleIsReadBack() {
    const CaptionSession read = decodeSession(example(), QStringLiteral("a.json"));
    QVERIFY(read == test::sampleSession());
  }

  void aNewerOrOlderVersionIsRefusedWithItsOwnMessage_data() {
    QTest::addColumn<QByteArray>("version");
    QTest::newRow("newer") << QByteArray("2");
    QTest::newRow("zero") << QByteArray("0");
    QTest::newRow("negative") << QByteArray("-1");
    QTest::newRow("beyond 32 bits") << QByteArray("4294967297");
    QTest::newRow("beyond 64 bits") << QByteArray("123456789012345678901234567890");
  }
  void aNewerOrOlderVersionIsRefusedWithItsOwnMessage() {
    QFETCH(QByteArray, version);
    const QByteArray bytes = exampleWith("\"schemaVersion\" : 1", "\"schemaVersion\" : " + version);
    QCOMPARE(refusal(bytes), QString("This session was saved by a newer version of Velun."));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(refusal(bytes), QString("이 기록은 더 최신 버전의 Velun에서 저장했습니다."));
  }
};

QTEST_GUILESS_MAIN(SessionCodecTest)
#include "session_codec_test.moc"
