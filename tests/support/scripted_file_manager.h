// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/file_manager.h"
#include "platform/foundation/failure.h"

#include <optional>
#include <QList>

namespace velun::test {

/// Records the files it is asked to show.
class ScriptedFileManager final : public FileManager {
 public:
  void reveal(const QUrl& file) override { revealed.append(file); }
  void openFolder(const QUrl& folder) override {
    if (failure) throw Failure(*failure);
    opened.append(folder);
  }

  void openPage(const QUrl& page) override { pages.append(page); }

  QList<QUrl> revealed;
  QList<QUrl> opened;
  QList<QUrl> pages;
  std::optional<QString> failure;
};

}  // namespace velun::test
