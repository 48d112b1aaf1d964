// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <QString>
#include <QStringList>
#include <QUrl>

namespace velun {

/// The options of a dialog that opens a file. Texts are in the interface language.
struct OpenPanelRequest {
  QString title;
  QString message;
  /// The common name of the file types.
  QString filterName;
  /// File-name patterns such as "*.json".
  QStringList patterns;
  /// Whether the dialog can also show all files: a pattern may be missing.
  bool offersAllFiles = false;
};

/// The options of a dialog that saves a file. Texts are in the interface language.
struct SavePanelRequest {
  QString title;
  QString proposedName;
  QString filterName;
  QStringList patterns;
  /// Appended when the user types a name without a suffix; without the dot.
  QString defaultSuffix;
};

/// The file dialogs; they return nullopt when the user cancels. Replaceable in tests. Main thread.
struct FilePanels {
  std::function<std::optional<QUrl>(const OpenPanelRequest&)> open;
  std::function<std::optional<QUrl>(const SavePanelRequest&)> save;
};

/// The real dialogs; saving over an existing file asks for confirmation.
FilePanels systemFilePanels();

}  // namespace velun
