// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/store/http_download.h"

#include "language/localization.h"
#include "platform/models/model_address.h"
#include "platform/models/store/model_store_failures.h"

#include <condition_variable>
#include <mutex>
#include <optional>
#include <QEventLoop>
#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QRegularExpression>

namespace velun {

namespace {

/// An error after which another attempt can succeed.
struct RetryableFailure {
  ModelFailure failure;
};

/// One request for the rest of the file.
class Attempt {
 public:
  Attempt(QNetworkAccessManager& network, std::int64_t bytes, const QString& partial,
          std::atomic<std::int64_t>& received, const std::stop_token& stop)
      : network_(network), bytes_(bytes), file_(partial), received_(received), stop_(stop) {}

  /// Throws `Failure`, `Cancelled` or `RetryableFailure`.
  void run(const QUrl& address, std::chrono::milliseconds stallTimeout) {
    if (!file_.open(QIODevice::ReadWrite)) throw model_failures::notSaved(file_.errorString());
    if (file_.size() > bytes_) file_.resize(0);
    setOffset(file_.size());
    if (offset_ == bytes_) return;
    if (!isSafeModelAddress(address)) throw model_failures::insecure();
    QNetworkReply* reply = network_.get(request(address, stallTimeout));
    const std::unique_ptr<QNetworkReply> owned(reply);
    reply->setReadBufferSize(1 << 20);
    exchange(reply);
    finish(reply, address);
  }

 private:
  void setOffset(std::int64_t offset) {
    offset_ = offset;
    received_ = offset;
  }

  /// Empties the file.
  void clear() {
    file_.resize(0);
    setOffset(0);
  }

  QNetworkRequest request(const QUrl& address, std::chrono::milliseconds stallTimeout) const {
    QNetworkRequest request(address);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::UserVerifiedRedirectPolicy);
    request.setTransferTimeout(static_cast<int>(stallTimeout.count()));
    // Sizes and hashes are those of the file, so the server must not compress it.
    request.setRawHeader("Accept-Encoding", "identity");
    request.setRawHeader("User-Agent", "Velun");
    if (offset_ > 0) request.setRawHeader("Range", "bytes=" + QByteArray::number(offset_) + "-");
    return request;
  }

  void exchange(QNetworkReply* reply) {
    // Leaves the loop instead of calling abort(): Qt logs a warning if the connection fails at the
    // same moment. Destroying the reply cancels the request.
    QEventLoop loop;
    loop_ = &loop;
    QObject::connect(reply, &QNetworkReply::redirected, reply, [this, reply](const QUrl& target) {
      if (isSafeModelAddress(target)) {
        Q_EMIT reply->redirectAllowed();
      } else {
        fail(model_failures::insecure());
      }
    });
    QObject::connect(reply, &QNetworkReply::readyRead, reply, [this, reply] { receive(reply); });
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    const std::stop_callback abort(stop_, [&loop] {
      QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    if (!reply->isFinished()) loop.exec();
    receive(reply);
  }

  void fail(const ModelFailure& failure) {
    if (!failure_) failure_ = failure;
    loop_->quit();
  }

  void receive(QNetworkReply* reply) {
    if (failure_ || isStartingOver_ || stop_.stop_requested() || !reply->isOpen()) return;
    if (!isAccepted_ && !accept(reply)) return;
    const QByteArray data = reply->readAll();
    if (offset_ + data.size() > bytes_) {
      clear();
      fail(model_failures::unexpectedFile());
    } else if (file_.write(data) != data.size() || !file_.flush()) {
      fail(model_failures::notWritten(file_));
    } else {
      setOffset(offset_ + data.size());
    }
  }

  /// Checks the response header before the body is written.
  bool accept(QNetworkReply* reply) {
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status == 206) {
      if (!continuesAtOffset(reply)) return startOver();
    } else if (status == 200) {
      const QVariant length = reply->header(QNetworkRequest::ContentLengthHeader);
      if (length.isValid() && length.toLongLong() != bytes_) {
        fail(model_failures::unexpectedFile());
        return false;
      }
      // The server does not support ranges and sends the whole file.
      clear();
    } else {
      return false;
    }
    if (file_.pos() != offset_ && !file_.seek(offset_)) {
      fail(model_failures::notSaved(file_.errorString()));
      return false;
    }
    isAccepted_ = true;
    return true;
  }

  bool continuesAtOffset(QNetworkReply* reply) const {
    static const QRegularExpression range("^bytes (\\d+)-\\d+/(\\d+|\\*)$");
    const auto match = range.match(QString::fromLatin1(reply->rawHeader("Content-Range")));
    if (!match.hasMatch() || match.captured(1).toLongLong() != offset_) return false;
    return match.captured(2) == "*" || match.captured(2).toLongLong() == bytes_;
  }

  bool startOver() {
    clear();
    isStartingOver_ = true;
    loop_->quit();
    return false;
  }

  void finish(QNetworkReply* reply, const QUrl& address) {
    if (stop_.stop_requested()) throw Cancelled();
    if (failure_) throw *failure_;
    if (offset_ == bytes_ && isAccepted_) return;
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status == 416) clear();
    if (isStartingOver_ || status == 416) throw RetryableFailure{model_failures::unexpectedFile()};
    if (status >= 400 && status < 500 && status != 408 && status != 429) {
      throw model_failures::refused(status);
    }
    if (status >= 400) throw RetryableFailure{model_failures::refused(status)};
    if (status == 0) throw RetryableFailure{model_failures::unreachable(address.host())};
    const bool hasReason = reply->error() != QNetworkReply::NoError;
    throw RetryableFailure{model_failures::interrupted(
        hasReason ? reply->errorString() : L("connection closed", "연결이 끊어짐"))};
  }

  QNetworkAccessManager& network_;
  std::int64_t bytes_;
  QFile file_;
  std::atomic<std::int64_t>& received_;
  std::stop_token stop_;
  std::int64_t offset_ = 0;
  QEventLoop* loop_ = nullptr;  ///< valid during exchange()
  bool isAccepted_ = false;
  bool isStartingOver_ = false;
  std::optional<ModelFailure> failure_;
};

/// Waits for `time` or a stop request.
void pause(std::chrono::milliseconds time, const std::stop_token& stop) {
  std::mutex mutex;
  std::condition_variable_any condition;
  std::unique_lock lock(mutex);
  condition.wait_for(lock, stop, time, [] { return false; });
}

}  // namespace

void downloadFile(const QUrl& address, std::int64_t bytes, const QString& partial,
                  const HttpRetryPolicy& policy, std::atomic<std::int64_t>& received,
                  const std::stop_token& stop) {
  QNetworkAccessManager network;
  std::chrono::milliseconds delay = policy.retryDelay;
  int attemptsWithoutProgress = 0;
  while (true) {
    const std::int64_t before = QFile(partial).size();
    try {
      Attempt(network, bytes, partial, received, stop).run(address, policy.stallTimeout);
      return;
    } catch (const RetryableFailure& retryable) {
      const bool hasAdvanced = QFile(partial).size() > before;
      if (hasAdvanced) delay = policy.retryDelay;
      attemptsWithoutProgress = hasAdvanced ? 0 : attemptsWithoutProgress + 1;
      if (attemptsWithoutProgress >= policy.maxAttemptsWithoutProgress) throw retryable.failure;
    }
    pause(delay, stop);
    if (stop.stop_requested()) throw Cancelled();
    delay *= 2;
  }
}

}  // namespace velun
