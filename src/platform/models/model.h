// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <vector>

namespace velun {

/// What a model is good for.
enum class ModelKind { recognition, punctuation, translation };

/// How a download holds what is kept of it.
enum class ModelPacking {
  none,     ///< as it is
  gzip,     ///< one compressed file
  zstd,     ///< one compressed file
  archive,  ///< a tar archive, in gzip, bzip2, xz, zstd or plain; named entries are kept
};

/// One file that is kept on disk.
struct ModelFile {
  QString name;            ///< in the model's folder, without any folder of its own
  std::int64_t bytes = 0;  ///< 0 when only the download's size is published
  QByteArray sha256;       ///< lower-case hexadecimal; empty when only the download's is published

  bool operator==(const ModelFile&) const = default;
};

/// One download, which gives one file, or several when it is an archive.
struct ModelDownload {
  QString address;  ///< https
  std::int64_t bytes = 0;
  QByteArray sha256;  ///< lower-case hexadecimal, never empty
  ModelPacking packing = ModelPacking::none;
  std::vector<ModelFile> files;

  /// The last part of the address: the name under which the download itself may be put into the
  /// model's folder by hand.
  QString fileName() const { return address.section(u'/', -1).section(u'?', 0, 0); }

  bool operator==(const ModelDownload&) const = default;
};

/// A model that can be downloaded.
struct Model {
  QString id;  ///< also the name of its folder
  ModelKind kind = ModelKind::recognition;
  QStringList languages;  ///< what it recognizes; of a translation model: from, to
  QString licence;        ///< as its makers state it
  std::int64_t installedBytes = 0;
  QJsonObject options;  ///< what the one kind of engine that uses it wants to know
  std::vector<ModelDownload> downloads;

  bool operator==(const Model&) const = default;
};

}  // namespace velun
