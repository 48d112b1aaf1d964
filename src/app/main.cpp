// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/app_delegate.h"
#include "app/captions_program.h"
#include "app/composition.h"
#include "cli/window_arguments.h"
#include "language/localization.h"
#include "platform/desktop/desktop_services.h"
#include "platform/desktop/linux/dbus_application_service.h"
#include "platform/desktop/linux/termination_signals.h"
#include "platform/foundation/file_preferences.h"
#include "platform/foundation/latest_job.h"
#include "ui/common/qt_translation.h"

#include <cstdio>
#include <cstdlib>
#include <malloc.h>
#include <QApplication>
#include <QDir>
#include <QIcon>
#include <QUrl>
#include <string_view>

namespace {

/// The desktop file, the bus name, the icon and the window class: one id everywhere.
constexpr auto kApplicationID = "app.velun.Velun";

/// Allocations of at least this many bytes are returned to the system when freed. Without a fixed
/// value glibc raises the threshold at the first large free and then keeps the memory of a
/// recognizer's tables.
constexpr int kMmapThreshold = 1 << 20;

/// Before there is a display. Qt's own options make no sense here; they are left to it.
bool isAnswered(int argc, char** argv) {
  using namespace velun;
  QStringList arguments;
  for (int i = 1; i < argc; ++i) arguments.append(QString::fromLocal8Bit(argv[i]));
  try {
    parseWindowArguments(arguments);
  } catch (const HelpRequested& help) {
    std::fputs(qUtf8Printable(help.text), stdout);
    return true;
  } catch (const UsageError&) {
    return false;
  }
  return false;
}

/// The files that the command line names, such as those of "Open With" in a file manager. Throws
/// `UsageError`.
QList<QUrl> filesToOpen() {
  QList<QUrl> files;
  for (const QString& file : velun::parseWindowArguments(QCoreApplication::arguments().sliced(1))) {
    files.append(QUrl::fromUserInput(file, QDir::currentPath(), QUrl::AssumeLocalFile));
  }
  return files;
}

/// Returns the exit status.
int runProgram(velun::ApplicationService& service) {
  using namespace velun;
  Composition composition(service);
  AppDelegate delegate(composition.model(), composition.services());
  TerminationSignals signals;
  QObject::connect(&signals, &TerminationSignals::received, &delegate,
                   &AppDelegate::terminationSignalled);
  delegate.applicationDidFinishLaunching();
  const int status = QApplication::exec();
  delegate.applicationWillTerminate();
  return status;
}

/// Ends the process where Qt 6.4 can wait for ever at its end: on Wayland, for its thread that
/// reads from the compositor. By now everything is saved but for the caption file, and the helpers
/// have ended.
void endWithoutQt(int status) {
  if (!QGuiApplication::platformName().startsWith(QLatin1String("wayland"))) return;
  velun::LatestJob::pool().waitForDone();
  std::fflush(nullptr);
  std::_Exit(status);
}

}  // namespace

int main(int argc, char** argv) {
  using namespace velun;
  mallopt(M_MMAP_THRESHOLD, kMmapThreshold);
  QCoreApplication::setApplicationName(kApplicationID);
  QCoreApplication::setApplicationVersion(VELUN_VERSION);
  if (argc > 1 && std::string_view(argv[1]) == "captions") return runCaptionsProgram(argc, argv);
  if (argc > 1) {
    Localization::shared().load(FilePreferences(FilePreferences::userPath()));
    if (isAnswered(argc, argv)) return 0;
  }
  preferWindowSystem();
  QApplication application(argc, argv);
  QGuiApplication::setDesktopFileName(kApplicationID);
  // The icon theme has the icon once the program is installed.
  QGuiApplication::setWindowIcon(
      QIcon::fromTheme(kApplicationID, QIcon(":/icons/app.velun.Velun.svg")));
  QtTranslation qtTranslation;

  DBusApplicationService service(kApplicationID);
  try {
    service.setFiles(filesToOpen());
  } catch (const UsageError& error) {
    std::fprintf(stderr, "velun: %s\n%s\n", error.what(),
                 qUtf8Printable(L("“velun --help” shows the options.",
                                  "옵션은 “velun --help”로 볼 수 있습니다.")));
    return kUsageStatus;
  }
  switch (service.claim()) {
    case ApplicationService::Claim::granted:
      break;
    case ApplicationService::Claim::forwarded:
      return 0;
    case ApplicationService::Claim::unanswered:
      Localization::shared().load(FilePreferences(FilePreferences::userPath()));
      std::fprintf(stderr, "%s\n",
                   qUtf8Printable(L("Velun is running but does not respond.",
                                    "Velun이 실행 중이지만 응답하지 않습니다.")));
      return 1;
  }

  const int status = runProgram(service);
  // The services have ended what tasks still waited for; those go on, which frees them.
  QCoreApplication::sendPostedEvents();
  endWithoutQt(status);
  return status;
}
