// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <deque>
#include <optional>
#include <QHash>
#include <QStringList>
#include <QTcpServer>

class QTcpSocket;

namespace velun::test {

/// The response to one request; by default correct.
struct Answer {
  int status = 200;          ///< others are sent without a body
  int cutAfter = -1;         ///< closes the connection after so many bytes of the body
  int hangAfter = -1;        ///< stalls after so many bytes of the body
  bool knowsRanges = true;   ///< supports range requests
  bool shiftsRange = false;  ///< sends another range than requested
  int claimedLength = -1;    ///< sent as Content-Length
  bool sendsLength = true;
  QByteArray body = {};   ///< replaces the file
  QString redirect = {};  ///< the target of a redirect
};

/// A web server on the loopback interface that serves files and misbehaves on request.
class ModelServer final : public QTcpServer {
  Q_OBJECT

 public:
  ModelServer();

  QHash<QString, QByteArray> files;  ///< by path, such as "/a/model.bin"
  std::deque<Answer> answers;        ///< for the next requests, in order; later ones are correct

  /// The path and the range, if any, of each request.
  QStringList requests;

  /// The number of body bytes sent.
  qint64 sentBytes = 0;

  /// Stops repeating the interrupted response.
  void recover() { cut_.reset(); }

  /// The URL of a path.
  QString address(const QString& path) const;

 private:
  /// The last response, if it was interrupted. Qt sometimes repeats such a request by itself; it
  /// gets the same response, and is not listed.
  std::optional<Answer> cut_;

  void serve(QTcpSocket* socket);
  void answer(QTcpSocket* socket, const QString& path, qint64 from);
};

}  // namespace velun::test
