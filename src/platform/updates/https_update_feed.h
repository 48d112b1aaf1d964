// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/updates/update_feed.h"

#include <memory>
#include <QNetworkAccessManager>
#include <QSslConfiguration>
#include <QUrl>

namespace velun {

/// A feed behind an HTTPS address. Redirections stay on HTTPS; what is too large or too slow to be
/// a feed is refused.
class HttpsUpdateFeed final : public UpdateFeed {
 public:
  /// `trust` decides which servers are believed.
  explicit HttpsUpdateFeed(const QUrl& address, const QSslConfiguration& trust =
                                                    QSslConfiguration::defaultConfiguration());

  QCoro::Task<QByteArray> fetch() override;

 private:
  QUrl address_;
  QSslConfiguration trust_;
  /// Made at the first fetch: it costs start-up time that most runs never need.
  std::unique_ptr<QNetworkAccessManager> network_;
};

}  // namespace velun
