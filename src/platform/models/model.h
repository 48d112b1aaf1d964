// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <vector>

namespace velun {

/// What a model is used for.
enum class ModelKind { recognition, punctuation, translation };

/// How the files of a model are packed in a download.
enum class ModelPacking {
  none,     ///< not packed
  gzip,     ///< one compressed file
  zstd,     ///< one compressed file
  archive,  ///< a tar archive, plain or compressed with gzip, bzip2, xz or zstd
};

/// One installed file.
struct ModelFile {
  QString name;            ///< in the model's folder; has no folder part
  std::int64_t bytes = 0;  ///< 0 if only the size of the download is known
  QByteArray sha256;       ///< lower-case hexadecimal; empty if only that of the download is known

  bool operator==(const ModelFile&) const = default;
};

/// One download: one file, or several in an archive.
struct ModelDownload {
  QString address;  ///< https
  std::int64_t bytes = 0;
  QByteArray sha256;  ///< lower-case hexadecimal, never empty
  ModelPacking packing = ModelPacking::none;
  std::vector<ModelFile> files;

  /// The last part of the address. Users can put the download itself into the model's folder under
  /// this name.
  QString fileName() const { return address.section(u'/', -1).section(u'?', 0, 0); }

  bool operator==(const ModelDownload&) const = default;
};

/// A model that can be downloaded.
struct Model {
  QString id;  ///< also the name of its folder
  ModelKind kind = ModelKind::recognition;
  QStringList languages;  ///< what it recognizes; for translation: source, target
  QString licence;        ///< as stated by the publisher
  std::int64_t installedBytes = 0;
  QJsonObject options;  ///< settings for the engine that uses it
  std::vector<ModelDownload> downloads;

  bool operator==(const Model&) const = default;
};

}  // namespace velun
