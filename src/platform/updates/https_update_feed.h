// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/updates/update_feed.h"

#include <memory>
#include <QNetworkAccessManager>
#include <QSslConfiguration>
#include <QUrl>

namespace velun {

/// A feed at an HTTPS address. Redirections must stay on HTTPS. Rejects a feed of more than 1 MiB
/// or without data for 15 s.
class HttpsUpdateFeed final : public UpdateFeed {
 public:
  /// `trust` is the TLS configuration used to verify the server.
  explicit HttpsUpdateFeed(const QUrl& address, const QSslConfiguration& trust =
                                                    QSslConfiguration::defaultConfiguration());

  QCoro::Task<QByteArray> fetch() override;

 private:
  QUrl address_;
  QSslConfiguration trust_;
  /// Created by the first fetch, because it takes start-up time.
  std::unique_ptr<QNetworkAccessManager> network_;
};

}  // namespace velun
