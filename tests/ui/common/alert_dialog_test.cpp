// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/alert_dialog.h"

#include "support/suite.h"

#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

using namespace velun;

class AlertDialogTest final : public test::Suite {
  Q_OBJECT

  static QSize shownSize(const QString& explanation) {
    AlertDialog alert({.message = "Couldn’t Complete the Action",
                       .informativeText = explanation,
                       .buttons = {"OK"}});
    alert.show();
    const auto* button = alert.findChild<QPushButton*>();
    const QRect place(button->mapTo(&alert, QPoint()), button->size());
    return alert.rect().contains(place) ? alert.size() : QSize();
  }

 private Q_SLOTS:
  void aLongExplanationLeavesTheButtonsOnTheScreen() {
    const QSize one = shownSize("“a.json” is damaged.");
    const QSize many = shownSize(QStringLiteral("“a.json” is damaged.\n").repeated(100));
    QVERIFY(one.height() > 0 && one.height() < 250);
    QVERIFY(many.height() > one.height() && many.height() < 520);
    QVERIFY(many.width() < one.width() + 40);
  }

  void aLongExplanationIsScrolledWithTheKeyboard() {
    const QString text = QStringLiteral("“a.json” is damaged.\n").repeated(100);
    AlertDialog alert(
        {.message = "Couldn’t Complete the Action", .informativeText = text, .buttons = {"OK"}});
    alert.show();
    const auto* area = alert.findChild<QScrollArea*>();
    QVERIFY(area);
    QCOMPARE(area->accessibleName(), text);
    QTest::keyClick(alert.focusWidget(), Qt::Key_Tab);
    QCOMPARE(alert.focusWidget(), static_cast<const QWidget*>(area));
    QTest::keyClick(alert.focusWidget(), Qt::Key_PageDown);
    QVERIFY(area->verticalScrollBar()->value() > 0);
  }
};

QTEST_MAIN(AlertDialogTest)
#include "alert_dialog_test.moc"
