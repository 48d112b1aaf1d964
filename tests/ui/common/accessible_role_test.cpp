// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/accessible_role.h"

#include "support/suite.h"

#include <QLabel>
#include <QWidget>

using namespace velun;
using namespace velun::test;

class AccessibleRoleTest final : public Suite {
  Q_OBJECT

 private Q_SLOTS:
  void aWidgetIsWhatItWasSaidToBe() {
    QWidget window;
    setAccessibleRole(window, QAccessible::Window);
    window.setAccessibleName("Captions");
    QLabel label("Text", &window);
    QWidget plain(&window);

    QAccessibleInterface* found = QAccessible::queryAccessibleInterface(&window);
    QCOMPARE(found->role(), QAccessible::Window);
    QCOMPARE(found->text(QAccessible::Name), "Captions");
    QCOMPARE(found->childCount(), 2);
    QCOMPARE(QAccessible::queryAccessibleInterface(&label)->role(), QAccessible::StaticText);
    QCOMPARE(QAccessible::queryAccessibleInterface(&plain)->role(), QAccessible::Client);
  }

  void whatTellsNothingIsOutOfSight() {
    QWidget meter;
    hideFromAccessibility(meter);
    QVERIFY(QAccessible::queryAccessibleInterface(&meter)->state().invisible);
  }
};

QTEST_MAIN(AccessibleRoleTest)
#include "accessible_role_test.moc"
