// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/caption_file_writer.h"

#include "platform/foundation/atomic_file.h"

#include <cerrno>
#include <mutex>
#include <QFile>
#include <unistd.h>
#include <utility>

namespace velun {

struct CaptionFileWriter::Turns {
  std::mutex mutex;
  std::size_t last = 0;
};

namespace {

std::optional<FileError> carryOut(const CaptionFileWriter::Order& order) {
  using Operation = FileError::Operation;
  if (!order.contents) {
    if (::unlink(QFile::encodeName(order.path).constData()) == 0 || errno == ENOENT) {
      return std::nullopt;
    }
    return FileError(Operation::write, errno, order.path);
  }
  try {
    // Not synced: after a power failure the captions have ended anyway.
    writeFileAtomically(order.path, *order.contents, false);
    return std::nullopt;
  } catch (const FileError& error) {
    return error;
  }
}

}  // namespace

CaptionFileWriter::CaptionFileWriter() : turns_(std::make_shared<Turns>()) {}

CaptionFileWriter::~CaptionFileWriter() {
  if (waiting_) next();
}

void CaptionFileWriter::add(const Order& order) {
  waiting_ = order;
  if (!job_.isRunning()) next();
}

void CaptionFileWriter::next() {
  auto work = [turns = turns_, turn = ++count_,
               order = *std::exchange(waiting_, std::nullopt)](const std::stop_token&) {
    const std::scoped_lock lock(turns->mutex);
    // The last order can overtake the one before when the writer is destroyed.
    if (turn < turns->last) return std::optional<FileError>();
    turns->last = turn;
    return carryOut(order);
  };
  job_.start(std::move(work), [this](const std::optional<FileError>& error) {
    if (waiting_) next();
    Q_EMIT finished(error);
  });
}

}  // namespace velun
