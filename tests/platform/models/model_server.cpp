// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/model_server.h"

#include <QRegularExpression>
#include <QTcpSocket>
#include <QTimer>

namespace velun::test {

ModelServer::ModelServer() {
  connect(this, &QTcpServer::newConnection, this, [this] {
    QTcpSocket* socket = nextPendingConnection();
    connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    connect(socket, &QTcpSocket::readyRead, this, [this, socket] { serve(socket); });
  });
  listen(QHostAddress::LocalHost);
}

QString ModelServer::address(const QString& path) const {
  return QString("http://127.0.0.1:%1%2").arg(serverPort()).arg(path);
}

void ModelServer::serve(QTcpSocket* socket) {
  const QByteArray head = socket->property("head").toByteArray() + socket->readAll();
  socket->setProperty("head", head);
  if (!head.endsWith("\r\n\r\n")) return;
  socket->setProperty("head", QByteArray());
  const QString path = QString::fromUtf8(head.split(' ').value(1));
  static const QRegularExpression range("\r\nRange: bytes=(\\d+)-\r\n",
                                        QRegularExpression::CaseInsensitiveOption);
  const auto match = range.match(QString::fromUtf8(head));
  const QString request = match.hasMatch() ? path + " from " + match.captured(1) : path;
  const bool isRepeated = cut_ && !requests.isEmpty() && requests.last() == request;
  if (!isRepeated) {
    requests.append(request);
    cut_.reset();
  }
  answer(socket, path, match.hasMatch() ? match.captured(1).toLongLong() : -1);
}

void ModelServer::answer(QTcpSocket* socket, const QString& path, qint64 from) {
  Answer how;
  if (cut_) {
    how = *cut_;
  } else if (!answers.empty()) {
    how = answers.front();
    answers.pop_front();
  }
  if (how.cutAfter >= 0) cut_ = how;
  if (!files.contains(path) && how.redirect.isEmpty()) how.status = 404;
  QByteArray body = how.body.isEmpty() ? files.value(path) : how.body;
  const qint64 whole = body.size();
  QByteArray extra;
  if (!how.redirect.isEmpty()) {
    how.status = 302;
    extra = "Location: " + how.redirect.toUtf8() + "\r\n";
  }
  if (how.status == 200 && from >= 0 && how.knowsRanges) {
    const qint64 first = how.shiftsRange ? from + 1 : from;
    how.status = first < whole ? 206 : 416;
    body = body.mid(first);
    extra = QString("Content-Range: bytes %1-%2/%3\r\n")
                .arg(first)
                .arg(whole - 1)
                .arg(whole)
                .toLatin1();
  }
  if (how.status != 200 && how.status != 206) body = "no";
  const qint64 length = how.claimedLength >= 0 ? how.claimedLength : body.size();
  socket->write("HTTP/1.1 " + QByteArray::number(how.status) + " Answer\r\n" + extra);
  if (how.sendsLength) socket->write("Content-Length: " + QByteArray::number(length) + "\r\n");
  socket->write("Connection: close\r\n\r\n");
  if (how.cutAfter >= 0) body.truncate(how.cutAfter);
  if (how.hangAfter >= 0) body.truncate(how.hangAfter);
  sentBytes += body.size();
  socket->write(body);
  if (how.hangAfter >= 0) return;
  if (how.cutAfter >= 0) {
    // Closes the connection while the client reads the response.
    QTimer::singleShot(std::chrono::milliseconds(50), socket, &QTcpSocket::disconnectFromHost);
  } else {
    socket->disconnectFromHost();
  }
}

}  // namespace velun::test
