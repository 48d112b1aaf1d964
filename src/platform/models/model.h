// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <QByteArray>
#include <QHash>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <vector>

namespace velun {

/// What a model is used for.
enum class ModelKind { recognition, punctuation, translation, speakers };

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
  /// Where an archive's file can be downloaded by itself, in order; its size and hash are known.
  QStringList addresses = {};

  bool operator==(const ModelFile&) const = default;
};

/// One download: one file, or several in an archive.
struct ModelDownload {
  QStringList addresses;  ///< https; not empty; tried in order
  std::int64_t bytes = 0;
  QByteArray sha256;  ///< lower-case hexadecimal, never empty
  ModelPacking packing = ModelPacking::none;
  std::vector<ModelFile> files;

  /// The last part of the first address. Users can put the download itself into the model's folder
  /// under this name.
  QString fileName() const { return addresses.first().section(u'/', -1).section(u'?', 0, 0); }

  bool operator==(const ModelDownload&) const = default;
};

/// A text in both interface languages.
struct BilingualText {
  QString english;
  QString korean;

  bool isEmpty() const { return english.isEmpty(); }
  bool operator==(const BilingualText&) const = default;
};

/// How good the captions of a recognition model are. data/models/README.md says how it is judged.
enum class ModelQuality { good, fair, higherErrors };

/// The errors of a recognition model in one test.
struct ModelErrors {
  /// Who measured them.
  enum class Source { velun, maker, others };

  double percent = 0;    ///< of the words or of the characters
  BilingualText speech;  ///< what was recognized
  Source source = Source::maker;
  bool areOfCharacters = false;

  bool operator==(const ModelErrors&) const = default;
};

/// What is known about a model in one of its languages. Missing members are those of the model.
struct ModelLanguageFacts {
  std::optional<ModelQuality> quality;
  std::optional<ModelErrors> errors;

  bool operator==(const ModelLanguageFacts&) const = default;
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

  // What users are told about it.
  QString title = {};                ///< its name, the same in every interface language
  BilingualText licenceNotice = {};  ///< to be shown and agreed to; empty if the licence is clear

  // Recognition models only.
  bool writesCase = false;
  bool writesPunctuation = false;
  int stepMs = 0;                ///< how often drafts can change; 0 if unknown
  std::int64_t memoryBytes = 0;  ///< used while recognizing; 0 if unknown
  ModelQuality quality = ModelQuality::fair;
  std::optional<ModelErrors> errors = {};
  QHash<QString, ModelLanguageFacts> languageFacts = {};  ///< where they differ

  ModelQuality qualityOf(const QString& language) const {
    return languageFacts.value(language).quality.value_or(quality);
  }
  /// Nullopt if they are not known.
  std::optional<ModelErrors> errorsOf(const QString& language) const {
    const std::optional<ModelErrors> own = languageFacts.value(language).errors;
    return own ? own : errors;
  }

  /// The size of all downloads.
  std::int64_t downloadBytes() const {
    std::int64_t bytes = 0;
    for (const ModelDownload& download : downloads) bytes += download.bytes;
    return bytes;
  }

  bool operator==(const Model&) const = default;
};

}  // namespace velun
