// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/file_error.h"
#include "platform/foundation/latest_job.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <QByteArray>
#include <QObject>
#include <QString>

namespace velun {

/// Writes or removes one file on a thread pool, in order. While one operation runs only the latest
/// of those that follow is kept. Main thread.
class CaptionFileWriter final : public QObject {
  Q_OBJECT

 public:
  /// What the file shall be; without contents it is removed.
  struct Order {
    QString path;
    std::optional<QByteArray> contents;
    bool operator==(const Order&) const = default;
  };

  CaptionFileWriter();
  /// The last order is still carried out; the application waits for it when it exits.
  ~CaptionFileWriter() override;

  void add(const Order& order);

 Q_SIGNALS:
  /// An order was carried out, or why not.
  void finished(const std::optional<velun::FileError>& error);

 private:
  /// Orders the operations across threads, also when this object is destroyed.
  struct Turns;

  void next();

  std::shared_ptr<Turns> turns_;
  std::size_t count_ = 0;
  std::optional<Order> waiting_;
  // Last, as it asks to be.
  LatestJob job_;
};

}  // namespace velun
