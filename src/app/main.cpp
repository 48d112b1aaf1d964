// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/app_delegate.h"
#include "app/composition.h"
#include "platform/desktop/linux/dbus_application_service.h"
#include "platform/desktop/linux/termination_signals.h"

#include <cstdio>
#include <QApplication>
#include <QIcon>

namespace {

/// The desktop file, the bus name, the icon and the window class: one id everywhere.
constexpr auto kApplicationID = "app.velun.Velun";

/// On Wayland no ordinary window can stay above the others or choose its place; through XWayland it
/// can. Whoever sets the platform by hand gets it.
void preferX11() {
  if (qEnvironmentVariableIsSet("DISPLAY") && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", "xcb");
  }
}

}  // namespace

int main(int argc, char** argv) {
  using namespace velun;
  preferX11();
  QCoreApplication::setApplicationName(kApplicationID);
  QCoreApplication::setApplicationVersion(VELUN_VERSION);
  QApplication application(argc, argv);
  QGuiApplication::setDesktopFileName(kApplicationID);
  QGuiApplication::setWindowIcon(QIcon::fromTheme(kApplicationID));

  DBusApplicationService service(kApplicationID);
  switch (service.claim()) {
    case ApplicationService::Claim::granted:
      break;
    case ApplicationService::Claim::forwarded:
      return 0;
    case ApplicationService::Claim::unanswered:
      std::fputs("Velun is running but does not answer.\n", stderr);
      return 1;
  }

  Composition composition(service);
  AppDelegate delegate(composition.model(), composition.services());
  TerminationSignals signals;
  QObject::connect(&signals, &TerminationSignals::received, &delegate,
                   &AppDelegate::terminationSignalled);
  delegate.applicationDidFinishLaunching();
  return QApplication::exec();
}
