// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QRegularExpression>
#include <QTest>

/// Waits until a condition holds, for up to a minute: machines can be slow. Once it has held it is
/// not asked again, as `QTRY_VERIFY` would, so it may be one that does not last.
#define VERIFY_SOON(condition) \
  QVERIFY(QTest::qWaitFor([&] { return static_cast<bool>(condition); }, 60'000))

namespace velun::test {

/// The base of every test class: a warning that a test did not announce with
/// `QTest::ignoreMessage` fails it. A class with an `init` of its own calls this one first.
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
