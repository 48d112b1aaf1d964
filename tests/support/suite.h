// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QRegularExpression>
#include <QTest>

/// Waits up to a minute until a condition holds. Unlike `QTRY_VERIFY` it does not evaluate the
/// condition again afterwards, so the condition may be a passing one.
#define VERIFY_SOON(condition) \
  QVERIFY(QTest::qWaitFor([&] { return static_cast<bool>(condition); }, 60'000))

namespace velun::test {

/// The base of every test class: a warning that was not announced with `QTest::ignoreMessage`
/// fails the test. A class with its own `init` calls this one first.
class Suite : public QObject {
  Q_OBJECT

 protected Q_SLOTS:
  void init() {
    // The offscreen platform says of itself that it has no window manager to tell sizes or orders
    // to.
    QTest::failOnWarning(QRegularExpression(
        QStringLiteral("^(?!This plugin does not support (propagateSizeHints|raise))")));
  }
};

}  // namespace velun::test
