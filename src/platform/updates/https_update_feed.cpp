// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/updates/https_update_feed.h"

#include "language/localization.h"
#include "platform/foundation/failure.h"
#include "platform/foundation/one_shot.h"

#include <QNetworkReply>

namespace velun {

namespace {

constexpr int kTransferTimeout = 15'000;  // milliseconds
constexpr qint64 kMaxFeedBytes = 1 << 20;

QNetworkRequest requestFor(const QUrl& address, const QSslConfiguration& trust) {
  QNetworkRequest request(address);
  request.setSslConfiguration(trust);
  request.setTransferTimeout(kTransferTimeout);
  request.setMaximumRedirectsAllowed(5);
  request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                       QNetworkRequest::NoLessSafeRedirectPolicy);
  request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
  // The request must not identify the user.
  request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
  request.setHeader(QNetworkRequest::UserAgentHeader, QStringLiteral("Velun"));
  return request;
}

void complete(const QNetworkReply& reply, QByteArray body, const OneShot<QByteArray>& done) {
  if (reply.error() == QNetworkReply::NoError) {
    done.complete(std::move(body));
    return;
  }
  done.fail(std::make_exception_ptr(
      Failure(L("The list of releases could not be fetched: " + reply.errorString(),
                "배포 목록을 가져오지 못했습니다: " + reply.errorString()))));
}

}  // namespace

HttpsUpdateFeed::HttpsUpdateFeed(const QUrl& address, const QSslConfiguration& trust)
    : address_(address), trust_(trust) {}

QCoro::Task<QByteArray> HttpsUpdateFeed::fetch() {
  if (address_.scheme() != "https") {
    throw Failure(L("The address of the list of releases is not secure.",
                    "배포 목록의 주소가 안전한 주소가 아닙니다."));
  }
  if (!network_) network_ = std::make_unique<QNetworkAccessManager>();
  QNetworkReply* reply = network_->get(requestFor(address_, trust_));
  const OneShot<QByteArray> done;
  const auto body = std::make_shared<QByteArray>();
  QObject::connect(reply, &QIODevice::readyRead, reply, [reply, body] {
    body->append(reply->readAll());
    if (body->size() > kMaxFeedBytes) reply->abort();
  });
  QObject::connect(reply, &QNetworkReply::finished, reply, [reply, body, done] {
    // An aborted reply is closed.
    if (reply->isOpen()) body->append(reply->readAll());
    complete(*reply, *body, done);
    reply->deleteLater();
  });
  const QByteArray feed = co_await done;
  co_return feed;
}

}  // namespace velun
