// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

namespace velun {

/// The files of a model that is one archive (zip or tar), unpacked for as long as this object
/// exists. The archive is checked first; the unpacked files exist only while the model is being
/// loaded, so that nothing else can change or damage them.
class ModelArchive {
 public:
  /// Unpacks the archive at `path`, whose SHA-256 must be `sha256` in hexadecimal, beside it.
  /// Deletes what a process left there that ended while it loaded the model. Throws `DamagedFile`
  /// if the archive is another one, and `std::runtime_error` if it has an entry that points outside
  /// its folder or is no file or folder, too many or too large entries, or cannot be unpacked.
  ModelArchive(const QString& path, const QByteArray& sha256);

  /// The folder of the model: the only folder of the archive, or all of it.
  QString folder() const;

 private:
  std::unique_ptr<QTemporaryDir> unpacked_;
};

}  // namespace velun
