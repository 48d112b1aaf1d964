// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/virtual_display.h"

#include <QEventLoop>

namespace velun::test {

namespace {

constexpr int kStartTime = 30000;

}  // namespace

VirtualDisplay::VirtualDisplay() {
  process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
  process_.start(QStringLiteral(VELUN_TEST_SUPPORT "/virtual_display"), QStringList());
  while (!process_.canReadLine()) {
    if (!process_.waitForReadyRead(kStartTime)) qFatal("The virtual display did not start");
  }
  qputenv("DISPLAY", process_.readLine().trimmed());
  qputenv("QT_QPA_PLATFORM", "xcb");
}

VirtualDisplay::~VirtualDisplay() {
  process_.closeWriteChannel();
  process_.waitForFinished(kStartTime);
}

QString VirtualDisplay::run(const QString& program, const QStringList& arguments) {
  QProcess process;
  QEventLoop loop;
  QObject::connect(&process, &QProcess::finished, &loop, &QEventLoop::quit);
  process.start(program, arguments);
  if (!process.waitForStarted()) qFatal("%s is missing", qPrintable(program));
  if (process.state() != QProcess::NotRunning) loop.exec();
  return QString::fromUtf8(process.readAllStandardOutput());
}

void VirtualDisplay::movePointer(int x, int y) {
  run(QStringLiteral("xdotool"), {"mousemove", QString::number(x), QString::number(y)});
}

void VirtualDisplay::pressButton() {
  run(QStringLiteral("xdotool"), {"mousedown", "1"});
}

void VirtualDisplay::releaseButton() {
  run(QStringLiteral("xdotool"), {"mouseup", "1"});
}

void VirtualDisplay::click(int x, int y) {
  movePointer(x, y);
  run(QStringLiteral("xdotool"), {"click", "1"});
}

}  // namespace velun::test
