// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/login_start_toggle.h"

#include "language/localization.h"
#include "support/scripted_login_start.h"
#include "support/suite.h"

#include <QApplication>
#include <QDialog>
#include <QTimer>
#include <QVBoxLayout>

using namespace velun;

namespace {

struct Stage {
  explicit Stage(LoginStart* login) : toggle(new LoginStartToggle(login)) {
    (new QVBoxLayout(&window))->addWidget(toggle);
    window.show();
  }

  QWidget window;
  LoginStartToggle* toggle;
};

}  // namespace

class LoginStartToggleTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void showsAndChangesWhatTheDesktopDoes() {
    test::ScriptedLoginStart login;
    Stage stage(&login);
    QCOMPARE(stage.toggle->text(), QString("Start at Login"));
    QVERIFY(!stage.toggle->isChecked());
    stage.toggle->click();
    QVERIFY(login.enabled);
    // It was turned off in the desktop's settings.
    stage.window.hide();
    login.enabled = false;
    stage.window.show();
    QVERIFY(!stage.toggle->isChecked());
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(stage.toggle->text(), QString("로그인할 때 시작"));
  }

  void aFailureIsShownAndChangesNothing() {
    test::ScriptedLoginStart login;
    login.fails = true;
    Stage stage(&login);
    bool isShown = false;
    QTimer::singleShot(0, qApp, [&isShown] {
      auto* alert = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      isShown = alert != nullptr;
      if (alert) alert->reject();
    });
    stage.toggle->click();
    QVERIFY(isShown);
    QVERIFY(!stage.toggle->isChecked());
  }

  void isHiddenWhereItIsNotPossible() {
    test::ScriptedLoginStart login;
    login.possible = false;
    QVERIFY(!Stage(&login).toggle->isVisible());
    QVERIFY(!Stage(nullptr).toggle->isVisible());
  }
};

QTEST_MAIN(LoginStartToggleTest)
#include "login_start_toggle_test.moc"
