// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/recording_row.h"

#include "support/suite.h"

using namespace velun;

class RecordingRowTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void aNameWithoutBlanksDoesNotMoveTheButtonsOut_data() {
    QTest::addColumn<QString>("error");
    QTest::newRow("waiting") << QString();
    QTest::newRow("failed") << "“" + QString(200, u'a') + ".mp3” doesn’t exist.";
  }
  void aNameWithoutBlanksDoesNotMoveTheButtonsOut() {
    QFETCH(QString, error);
    RecordingQueue::Item item{.path = "/" + QString(200, u'a') + ".mp3", .error = error};
    if (!error.isEmpty()) item.state = RecordingQueue::State::failed;
    RecordingRow row;
    row.show(item);
    QVERIFY2(row.minimumSizeHint().width() < 480,
             qPrintable(QString::number(row.minimumSizeHint().width())));
    QCOMPARE(row.toolTip(), item.path);
  }
};

QTEST_MAIN(RecordingRowTest)
#include "recording_row_test.moc"
