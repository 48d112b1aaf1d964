// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/dbus_file_manager.h"

#include "language/localization.h"
#include "platform/desktop/linux/open_outside.h"
#include "platform/foundation/failure.h"
#include "platform/foundation/file_access.h"
#include "platform/foundation/file_error.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>

namespace velun {

void DBusFileManager::reveal(const QUrl& file) {
  const QUrl folder = file.adjusted(QUrl::RemoveFilename);
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) {
    openOutside(folder);
    return;
  }
  auto call = QDBusMessage::createMethodCall("org.freedesktop.FileManager1",
                                             "/org/freedesktop/FileManager1",
                                             "org.freedesktop.FileManager1", "ShowItems");
  call << QStringList{file.toString(QUrl::FullyEncoded)} << QString();
  auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, folder] {
    watcher->deleteLater();
    if (watcher->isError()) openOutside(folder);
  });
}

void DBusFileManager::openFolder(const QUrl& folder) {
  const QString path = folder.toLocalFile();
  try {
    makePrivateFolder(path);
  } catch (const FileError& error) {
    throw Failure(L("The folder “" + path +
                        "” couldn’t be created: " + QString::fromStdString(error.code().message()),
                    "“" + path + "” 폴더를 만들지 못했습니다: " +
                        QString::fromStdString(error.code().message())));
  }
  if (!openOutside(folder)) {
    throw Failure(L("No program that opens the folder “" + path + "” was found.",
                    "“" + path + "” 폴더를 열 프로그램을 찾지 못했습니다."));
  }
}

void DBusFileManager::openPage(const QUrl& page) {
  openOutside(page);
}

}  // namespace velun
