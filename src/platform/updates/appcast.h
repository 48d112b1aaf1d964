// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QByteArray>
#include <QString>
#include <QUrl>
#include <vector>

namespace velun {

/// One release that a feed offers.
struct AppcastItem {
  /// Used for comparing.
  QString version;
  /// Shown to the user; the same as `version` unless the feed has one.
  QString shortVersion;
  /// Release notes as HTML or plain text; may be empty.
  QString notes;
  /// The web page of the release.
  QUrl page;

  bool operator==(const AppcastItem&) const = default;
};

/// Reads an appcast, an RSS feed with version numbers. Skips items for other systems, of a channel,
/// without a version of at most 100 characters, or without a web page. Throws `Failure` if it is
/// not an appcast.
std::vector<AppcastItem> readAppcast(const QByteArray& xml);

/// The newest release that is newer than `version`; nullopt if there is none.
std::optional<AppcastItem> newestAfter(const QString& version,
                                       const std::vector<AppcastItem>& items);

}  // namespace velun
