// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/virtual_display.h"

#include <QEventLoop>

namespace velun::test {

namespace {

constexpr int kTimeout = 30'000;

}  // namespace

VirtualDisplay::VirtualDisplay() {
  process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
  process_.start(QStringLiteral("python3"), {"-B", VELUN_PRIVATE_DESKTOP});
  while (!process_.canReadLine()) {
    if (!process_.waitForReadyRead(kTimeout)) qFatal("The virtual display did not start");
  }
  qputenv("DISPLAY", process_.readLine().trimmed());
  qputenv("QT_QPA_PLATFORM", "xcb");
}

VirtualDisplay::~VirtualDisplay() {
  process_.closeWriteChannel();
  process_.waitForFinished(kTimeout);
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
