// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/models/model.h"

#include <QHash>

namespace velun {

/// What is remembered of the files that were verified, so that a model of half a gigabyte is not
/// read again at every start. Kept in the model's folder as "verified.json".
class VerifiedRecord {
 public:
  struct Entry {
    std::int64_t bytes = 0;
    std::int64_t modified = 0;  ///< milliseconds since 1970, as the file system has it
    QByteArray sha256;
    QByteArray download;  ///< the SHA-256 of the download that it came from
  };

  /// Empty when there is none or it cannot be read.
  static VerifiedRecord read(const QString& folder);

  /// Throws `Failure`.
  void write(const QString& folder) const;

  /// Notes a file that was verified just now.
  void note(const QString& folder, const QString& name, const QByteArray& sha256,
            const QByteArray& download);

  /// Null when the file is not noted.
  const Entry* find(const QString& name) const;

  /// Whether every file of the model is noted as coming from the model's downloads, and is in the
  /// folder as it was then.
  bool covers(const Model& model, const QString& folder) const;

 private:
  QHash<QString, Entry> entries_;
};

}  // namespace velun
