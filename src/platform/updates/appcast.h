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
  /// What is compared.
  QString version;
  /// What is shown; the same unless the feed says otherwise.
  QString shortVersion;
  /// What is new, as HTML or plain text; may be empty.
  QString notes;
  /// The release's page.
  QUrl page;

  bool operator==(const AppcastItem&) const = default;
};

/// The releases of an appcast, an RSS feed with version numbers. Items for other systems, of a
/// channel, without a version (of at most 100 characters) or without a web page are left out.
/// Throws `Failure` for what is no such feed.
std::vector<AppcastItem> readAppcast(const QByteArray& xml);

/// The newest release, if it is newer than `version`.
std::optional<AppcastItem> newestAfter(const QString& version,
                                       const std::vector<AppcastItem>& items);

}  // namespace velun
