// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/selectable_label.h"

#include "support/suite.h"

#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QMimeData>
#include <QShortcut>
#include <QTimer>
#include <QVBoxLayout>

using namespace velun;

class SelectableLabelTest final : public test::Suite {
  Q_OBJECT

  std::unique_ptr<QWidget> window_;
  SelectableLabel* label_ = nullptr;

  static QString clipboardText() { return QApplication::clipboard()->text(); }
  static QStringList clipboardFormats() { return QApplication::clipboard()->mimeData()->formats(); }

 private Q_SLOTS:
  void init() {
    Suite::init();
    QApplication::clipboard()->clear();
    window_ = std::make_unique<QWidget>();
    label_ = new SelectableLabel("First line\nSecond line", window_.get());
    label_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    (new QVBoxLayout(window_.get()))->addWidget(label_);
    window_->show();
    QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
    window_->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(window_.get()));
    label_->setFocus();
  }

  void copyKeyCopiesTheSelectionAsPlainText() {
    label_->setSelection(0, 5);
    QTest::keyClick(label_, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(clipboardText(), QString("First"));
    QCOMPARE(clipboardFormats(), QStringList{"text/plain"});
  }

  void keysWorkAlthoughTheWindowHasTheSameShortcuts() {
    int runs = 0;
    for (const auto key : {QKeySequence::Copy, QKeySequence::SelectAll}) {
      auto* shortcut = new QShortcut(key, window_.get());
      connect(shortcut, &QShortcut::activated, this, [&runs] { ++runs; });
    }
    QTest::keyClick(window_->windowHandle(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(window_->windowHandle(), Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(clipboardText(), QString("First line\nSecond line"));
    QCOMPARE(runs, 0);
  }

  void editCommandsReachTheLabel() {
    QVERIFY(QMetaObject::invokeMethod(label_, "selectAll"));
    QVERIFY(QMetaObject::invokeMethod(label_, "copy"));
    QCOMPARE(clipboardText(), QString("First line\nSecond line"));
  }

  void clipboardIsKeptWithoutASelection() {
    QApplication::clipboard()->setText("before");
    QTest::keyClick(label_, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(clipboardText(), QString("before"));
  }

  void contextMenuCopies() {
    label_->setSelection(6, 4);
    QTimer::singleShot(0, qApp, [] {
      auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
      QVERIFY(menu);
      menu->setActiveAction(menu->actions().front());
      QTest::keyClick(menu, Qt::Key_Return);
    });
    QTest::ignoreMessage(QtWarningMsg, "This plugin does not support grabbing the keyboard");
    QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, label_->mapToGlobal(QPoint()));
    QApplication::sendEvent(label_, &event);
    QCOMPARE(clipboardText(), QString("line"));
  }

  void labelThatCannotBeSelectedLeavesTheKeysAlone() {
    label_->setTextInteractionFlags(Qt::NoTextInteraction);
    int runs = 0;
    auto* shortcut = new QShortcut(QKeySequence::Copy, window_.get());
    connect(shortcut, &QShortcut::activated, this, [&runs] { ++runs; });
    QTest::keyClick(window_->windowHandle(), Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(runs, 1);
  }
};

QTEST_MAIN(SelectableLabelTest)
#include "selectable_label_test.moc"
