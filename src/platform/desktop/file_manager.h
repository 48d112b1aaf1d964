// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QUrl>

namespace velun {

/// The desktop's file manager and its browser. Main thread.
class FileManager {
 public:
  virtual ~FileManager() = default;

  /// Opens the file's folder with the file selected, or only the folder where that is not
  /// supported.
  virtual void reveal(const QUrl& file) = 0;

  /// Opens a folder, creating it and its parents when missing. Throws `Failure`.
  virtual void openFolder(const QUrl& folder) = 0;

  /// Opens a page in the browser.
  virtual void openPage(const QUrl& page) = 0;
};

}  // namespace velun
