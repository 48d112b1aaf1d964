// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/virtual_display.h"

#include <cstdlib>
#include <memory>
#include <QEventLoop>
#include <xcb/xcb.h>

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

bool VirtualDisplay::isPointerFree() {
  const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
      xcb_connect(nullptr, nullptr), &xcb_disconnect);
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data->root;
  const auto cookie = xcb_grab_pointer(connection.get(), 0, root, 0, XCB_GRAB_MODE_ASYNC,
                                       XCB_GRAB_MODE_ASYNC, XCB_NONE, XCB_NONE, XCB_CURRENT_TIME);
  // Disconnecting releases the grab.
  const std::unique_ptr<xcb_grab_pointer_reply_t, decltype(&std::free)> reply(
      xcb_grab_pointer_reply(connection.get(), cookie, nullptr), &std::free);
  return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
}

}  // namespace velun::test
