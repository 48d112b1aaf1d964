// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/models/model.h"

#include <QHash>

namespace velun {

/// The record of verified files, so that a model of half a gigabyte is not hashed at every start.
/// Stored in the model's folder as `kFileName`.
class VerifiedRecord {
 public:
  static constexpr const char* kFileName = "verified.json";

  struct Entry {
    std::int64_t bytes = 0;
    std::int64_t modified = 0;  ///< modification time, milliseconds since 1970
    QByteArray sha256;
    QByteArray download;  ///< the SHA-256 of the download that contained it
  };

  /// Empty if there is none or it cannot be read.
  static VerifiedRecord read(const QString& folder);

  /// Throws `Failure`.
  void write(const QString& folder) const;

  /// Makes the record cover no model until its files are noted again, because something suggests
  /// that they are damaged. Throws `Failure`.
  static void doubt(const QString& folder);

  /// Adds a file that has just been verified.
  void note(const QString& folder, const QString& name, const QByteArray& sha256,
            const QByteArray& download);

  /// Null if the file is not in the record.
  /// The names of all files in it.
  QStringList names() const { return entries_.keys(); }

  const Entry* find(const QString& name) const;

  /// Whether every file of the model was verified as part of its downloads and is unchanged since.
  bool covers(const Model& model, const QString& folder) const;

  /// Whether the folder has a verified file that is unchanged and not of the model's downloads.
  bool hasOtherRevision(const Model& model, const QString& folder) const;

 private:
  QHash<QString, Entry> entries_;
};

}  // namespace velun
