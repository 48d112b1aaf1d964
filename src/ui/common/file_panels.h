// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <QString>
#include <QStringList>
#include <QUrl>

namespace velun {

/// Which file the user is asked to choose. Texts are in the interface language.
struct OpenPanelRequest {
  QString title;
  QString message;
  /// What the file types are called together.
  QString filterName;
  /// File-name patterns such as "*.json".
  QStringList patterns;
};

/// Where the user is asked to write a file. Texts are in the interface language.
struct SavePanelRequest {
  QString title;
  QString proposedName;
  QString filterName;
  QStringList patterns;
  /// Added when the user types a name without one, without the dot.
  QString defaultSuffix;
};

/// The dialogs that ask for a file; none when the user cancels. Replaced in tests. Main thread.
struct FilePanels {
  std::function<std::optional<QUrl>(const OpenPanelRequest&)> open;
  std::function<std::optional<QUrl>(const SavePanelRequest&)> save;
};

/// The toolkit's own dialogs; saving over a file asks first.
FilePanels systemFilePanels();

}  // namespace velun
