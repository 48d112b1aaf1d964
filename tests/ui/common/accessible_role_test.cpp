// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/accessible_role.h"

#include "support/suite.h"

#include <QLabel>
#include <QMenu>
#include <QTimer>
#include <QToolButton>
#include <QWidget>

using namespace velun;
using namespace velun::test;

class AccessibleRoleTest final : public Suite {
  Q_OBJECT

 private Q_SLOTS:
  void widgetHasTheAssignedRole() {
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

  void menuButtonOpensItsMenu() {
    QToolButton button;
    setOpensMenu(button);
    QMenu menu;
    menu.addAction("One");
    button.setMenu(&menu);
    button.setPopupMode(QToolButton::InstantPopup);
    button.show();
    QAccessibleInterface* found = QAccessible::queryAccessibleInterface(&button);
    QCOMPARE(found->role(), QAccessible::ButtonMenu);
    QVERIFY(found->state().hasPopup);
    QVERIFY(found->actionInterface()->actionNames().contains(
        QAccessibleActionInterface::showMenuAction()));
    QTest::ignoreMessage(QtWarningMsg, "This plugin does not support grabbing the keyboard");
    bool wasOpened = false;
    connect(&menu, &QMenu::aboutToShow, this, [&] {
      wasOpened = true;
      QTimer::singleShot(0, &menu, &QMenu::close);
    });
    found->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
    QTRY_VERIFY(wasOpened);
    QTRY_VERIFY(!menu.isVisible());
    wasOpened = false;
    button.setEnabled(false);
    found->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
    QCoreApplication::processEvents();
    QVERIFY(!wasOpened);
  }

  void menuIsAChildOfItsButton() {
    QToolButton button;
    setOpensMenu(button);
    QAccessibleInterface* found = QAccessible::queryAccessibleInterface(&button);
    QCOMPARE(found->childCount(), 0);
    QMenu menu;
    menu.addAction("One");
    button.setMenu(&menu);
    QCOMPARE(found->childCount(), 1);
    QAccessibleInterface* below = found->child(0);
    QCOMPARE(below->object(), &menu);
    QCOMPARE(below->child(0)->text(QAccessible::Name), "One");
    QCOMPARE(found->indexOfChild(below), 0);
    QCOMPARE(found->indexOfChild(found), -1);
    QVERIFY(!found->child(1));
  }

  void popupIsAChildOfItsButtonAndOtherWindowsAreNot() {
    QToolButton button;
    setOpensMenu(button);
    QMenu menu;
    button.setMenu(&menu);
    QWidget popup(nullptr, Qt::Popup);
    setOpensPopup(button, popup);
    QAccessibleInterface* found = QAccessible::queryAccessibleInterface(&button);
    QCOMPARE(found->childCount(), 2);
    QCOMPARE(found->child(1)->object(), &popup);
    QCOMPARE(found->indexOfChild(found->child(1)), 1);
    QVERIFY(!found->child(2));
    // The application lists it.
    popup.setWindowFlags(Qt::Tool);
    QCOMPARE(found->childCount(), 1);
  }

  void decorativeWidgetsAreHidden() {
    QWidget meter;
    hideFromAccessibility(meter);
    QVERIFY(QAccessible::queryAccessibleInterface(&meter)->state().invisible);
  }
};

QTEST_MAIN(AccessibleRoleTest)
#include "accessible_role_test.moc"
