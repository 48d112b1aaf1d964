// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QString>

namespace velun {

/// A language that the user can choose.
struct LanguageChoice {
  QString identifier;
  QString name;  ///< in the interface language
  /// What has to be downloaded first, in bytes: 0 when it is ready, nothing when that is unknown or
  /// nothing can be downloaded.
  std::optional<qint64> downloadBytes;

  bool isReady() const { return downloadBytes == 0; }

  bool operator==(const LanguageChoice&) const = default;
};

}  // namespace velun
