// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/file_manager.h"

#include <QObject>

namespace velun {

/// Calls the file manager on the session bus; without one, opens the folder with its default
/// program.
class DBusFileManager final : public QObject, public FileManager {
  Q_OBJECT

 public:
  void reveal(const QUrl& file) override;
  void openFolder(const QUrl& folder) override;
  void openPage(const QUrl& page) override;
};

}  // namespace velun
