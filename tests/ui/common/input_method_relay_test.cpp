// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/input_method_relay.h"

#include "support/suite.h"

#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QPushButton>

using namespace velun;

class InputMethodRelayTest final : public test::Suite {
  Q_OBJECT

  QWidget window_;
  QPushButton* before_ = nullptr;
  QWidget* popup_ = nullptr;
  QLineEdit* field_ = nullptr;
  std::unique_ptr<InputMethodRelay> relay_;

 private Q_SLOTS:
  void initTestCase() {
    before_ = new QPushButton(&window_);
    popup_ = new QWidget(&window_, Qt::Tool);
    popup_->setGeometry(300, 200, 200, 60);
    field_ = new QLineEdit(popup_);
    field_->setGeometry(20, 10, 160, 30);
    window_.setGeometry(40, 50, 300, 200);
    window_.show();
    window_.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window_));
    before_->setFocus();
    relay_ = std::make_unique<InputMethodRelay>(*popup_, *field_);
  }

  void fieldIsWrittenWhileTheWindowHasTheKeyboard() {
    relay_->begin();
    QObject* focus = QGuiApplication::focusObject();
    QInputMethodQueryEvent accepts(Qt::ImEnabled);
    QCoreApplication::sendEvent(focus, &accepts);
    QVERIFY(accepts.value(Qt::ImEnabled).toBool());
    QInputMethodEvent typed;
    typed.setCommitString("한");
    QCoreApplication::sendEvent(focus, &typed);
    QCOMPARE(field_->text(), QStringLiteral("한"));
  }

  void cursorIsWhereTheFieldHasIt() {
    QInputMethodQueryEvent asked(Qt::ImCursorRectangle);
    QCoreApplication::sendEvent(relay_.get(), &asked);
    const QRect told = asked.value(Qt::ImCursorRectangle).toRect();
    const QRect here = field_->inputMethodQuery(Qt::ImCursorRectangle).toRectF().toAlignedRect();
    QCOMPARE(relay_->mapToGlobal(told.topLeft()), field_->mapToGlobal(here.topLeft()));
    QCOMPARE(told.size(), here.size());
  }

  void focusIsGivenBack() {
    relay_->end();
    QCOMPARE(window_.focusWidget(), before_);
  }

  void focusIsGivenBackToNothing() {
    before_->clearFocus();
    relay_->begin();
    QCOMPARE(window_.focusWidget(), relay_.get());
    relay_->end();
    QVERIFY(!window_.focusWidget());
  }

  void parentMayGoIntoAnotherWindow() {
    QWidget other;
    other.show();
    popup_->setParent(&other, Qt::Tool);
    relay_->begin();
    QCOMPARE(relay_->window(), &other);
    relay_->end();
    popup_->setParent(&window_, Qt::Tool);
    relay_.reset();
  }
};

QTEST_MAIN(InputMethodRelayTest)
#include "input_method_relay_test.moc"
