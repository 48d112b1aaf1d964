// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/updates/update_checker.h"

#include "platform/updates/https_update_feed.h"
#include "support/suite.h"

#include <QProcess>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>
#include <QTemporaryDir>

using namespace velun;

namespace {

/// A web server on the loopback interface with its own certificate and one response.
class Server final : public QObject {
 public:
  Server() {
    const QString certificate = folder_.filePath("certificate.pem");
    const QString key = folder_.filePath("key.pem");
    QProcess openssl;
    openssl.start("openssl", {"req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2",
                              "-subj", "/CN=localhost", "-addext", "subjectAltName=DNS:localhost",
                              "-keyout", key, "-out", certificate});
    if (!openssl.waitForFinished() || openssl.exitCode() != 0) qFatal("openssl failed");
    certificate_ = QSslCertificate::fromPath(certificate).value(0);
    QFile keyFile(key);
    if (!keyFile.open(QIODevice::ReadOnly)) qFatal("no key");
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(certificate_);
    configuration.setPrivateKey(QSslKey(&keyFile, QSsl::Rsa));
    server_.setSslConfiguration(configuration);
    connect(&server_, &QTcpServer::pendingConnectionAvailable, this, [this] {
      while (QTcpSocket* socket = server_.nextPendingConnection()) serve(socket);
    });
    server_.listen(QHostAddress::LocalHost);
  }

  QUrl address() const {
    return QUrl(QStringLiteral("https://localhost:%1/feed.xml").arg(server_.serverPort()));
  }
  /// Trusts only this server.
  QSslConfiguration trust() const {
    QSslConfiguration trust = QSslConfiguration::defaultConfiguration();
    trust.setCaCertificates({certificate_});
    return trust;
  }

  QByteArray status = "200 OK";
  QByteArray headers;
  QByteArray body;
  int requests = 0;

 private:
  void serve(QTcpSocket* socket) {
    connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
      if (!socket->peek(4096).contains("\r\n\r\n")) return;
      socket->readAll();
      ++requests;
      socket->write("HTTP/1.1 " + status + "\r\n" + headers + "Content-Length: " +
                    QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" + body);
      socket->disconnectFromHost();
    });
    connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
  }

  QTemporaryDir folder_;
  QSslCertificate certificate_;
  QSslServer server_;
};

QByteArray feedWith(const QByteArray& version) {
  return "<rss version=\"2.0\" "
         "xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\"><channel><item>"
         "<link>https://example.org/release</link><sparkle:version>" +
         version + "</sparkle:version></item></channel></rss>";
}

/// Runs a check and returns its outcome.
UpdateOutcome outcomeOf(UpdateChecker& checker) {
  std::optional<UpdateOutcome> outcome;
  QCoro::Task<UpdateOutcome> task = checker.checkForUpdates();
  auto waiting = task.then([&](UpdateOutcome result) { outcome = std::move(result); });
  [&] {
    QTRY_VERIFY_WITH_TIMEOUT(outcome, 20'000);
  }();
  return outcome.value_or(NoUpdateFeed());
}

}  // namespace

class UpdateCheckerTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { server_ = std::make_unique<Server>(); }
  void cleanupTestCase() { server_.reset(); }
  void init() {
    Suite::init();
    server_->status = "200 OK";
    server_->headers = {};
    server_->body = {};
    server_->requests = 0;
  }

  void offersANewerVersion() {
    server_->body = feedWith("1.10");
    const UpdateOutcome outcome = check("1.9");
    const auto* update = std::get_if<UpdateAvailable>(&outcome);
    QVERIFY(update);
    QCOMPARE(update->item.version, QString("1.10"));
    QCOMPARE(update->item.page, QUrl("https://example.org/release"));
    QCOMPARE(update->version, QString("1.9"));
    QCOMPARE(server_->requests, 1);
  }

  void newestVersionIsUpToDate() {
    server_->body = feedWith("1.10");
    const UpdateOutcome outcome = check("1.10.0");
    QVERIFY(std::holds_alternative<UpToDate>(outcome));
  }

  void failuresAreReported_data() {
    QTest::addColumn<QByteArray>("status");
    QTest::addColumn<QByteArray>("headers");
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("not found") << QByteArray("404 Not Found") << QByteArray() << QByteArray();
    QTest::newRow("no feed") << QByteArray("200 OK") << QByteArray() << QByteArray("hello");
    QTest::newRow("too large") << QByteArray("200 OK") << QByteArray() << QByteArray(3 << 20, ' ');
    QTest::newRow("redirected to plain HTTP")
        << QByteArray("302 Found") << QByteArray("Location: http://localhost:1/\r\n")
        << QByteArray();
  }
  void failuresAreReported() {
    QFETCH(QByteArray, status);
    QFETCH(QByteArray, headers);
    QFETCH(QByteArray, body);
    server_->status = status;
    server_->headers = headers;
    server_->body = body;
    const UpdateOutcome outcome = check("1.0");
    const auto* failure = std::get_if<UpdateCheckFailed>(&outcome);
    QVERIFY(failure);
    QVERIFY(!failure->description.isEmpty());
  }

  void untrustedServerIsRejected() {
    server_->body = feedWith("9");
    UpdateChecker checker("1", false, std::make_unique<HttpsUpdateFeed>(server_->address()));
    QVERIFY(std::holds_alternative<UpdateCheckFailed>(outcomeOf(checker)));
    QCOMPARE(server_->requests, 0);
  }

  void missingServerIsReported() {
    UpdateChecker checker("1", false,
                          std::make_unique<HttpsUpdateFeed>(QUrl("https://localhost:1/feed.xml")));
    QVERIFY(std::holds_alternative<UpdateCheckFailed>(outcomeOf(checker)));
  }

  void httpIsRejected() {
    QUrl address = server_->address();
    address.setScheme("http");
    UpdateChecker checker("1", false, std::make_unique<HttpsUpdateFeed>(address));
    QVERIFY(std::holds_alternative<UpdateCheckFailed>(outcomeOf(checker)));
    QCOMPARE(server_->requests, 0);
  }

  void packagedProgramSendsNoRequest() {
    UpdateChecker checker("1", true, std::make_unique<HttpsUpdateFeed>(server_->address()));
    QVERIFY(std::holds_alternative<UpdatedBySystem>(outcomeOf(checker)));
    QCOMPARE(server_->requests, 0);
  }

  void missingFeedIsReported() {
    UpdateChecker checker("1", false, nullptr);
    QVERIFY(std::holds_alternative<NoUpdateFeed>(outcomeOf(checker)));
  }

 private:
  UpdateOutcome check(const QString& version) {
    UpdateChecker checker(version, false,
                          std::make_unique<HttpsUpdateFeed>(server_->address(), server_->trust()));
    return outcomeOf(checker);
  }

  std::unique_ptr<Server> server_;
};

QTEST_GUILESS_MAIN(UpdateCheckerTest)
#include "update_checker_test.moc"
