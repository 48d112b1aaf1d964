// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <deque>
#include <optional>
#include <QHash>
#include <QStringList>
#include <QTcpServer>

class QTcpSocket;

namespace velun::test {

/// How one request is answered; by default as it should be.
struct Answer {
  int status = 200;          ///< anything else is sent without the file
  int cutAfter = -1;         ///< closes the connection after so many bytes of the body
  int hangAfter = -1;        ///< sends no more after so many bytes of the body
  bool knowsRanges = true;   ///< answers a range with a part
  bool shiftsRange = false;  ///< answers a range with another part than the one asked for
  int claimedLength = -1;    ///< sends this as the length
  bool sendsLength = true;
  QByteArray body = {};   ///< in place of the file
  QString redirect = {};  ///< sends there
};

/// A web server on this computer that hands out files and misbehaves as it is told.
class ModelServer final : public QTcpServer {
  Q_OBJECT

 public:
  ModelServer();

  QHash<QString, QByteArray> files;  ///< by path, such as "/a/model.bin"
  std::deque<Answer> answers;        ///< for the next requests, in order; then as it should be

  /// One line a request: the path, and the range when one was asked for.
  QStringList requests;

  /// The number of body bytes handed out.
  qint64 sentBytes = 0;

  /// Ends an answer that was cut off, for those who ask for the same once more.
  void recover() { cut_.reset(); }

  /// The address of a path.
  QString address(const QString& path) const;

 private:
  /// The answer to the last request, when it was cut off. Qt's client now and then repeats such a
  /// request by itself, which must make no difference: it is answered the same, and not listed.
  std::optional<Answer> cut_;

  void serve(QTcpSocket* socket);
  void answer(QTcpSocket* socket, const QString& path, qint64 from);
};

}  // namespace velun::test
