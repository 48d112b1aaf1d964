// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/model_catalogue.h"

#include "platform/models/catalogue_checker.h"
#include "platform/models/model_address.h"
#include "platform/models/model_facts.h"

#include <algorithm>
#include <optional>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QSet>

// Resources of a static library must be initialized, and outside any namespace.
static void loadResources() {
  Q_INIT_RESOURCE(model_catalogue);
}

namespace velun {

namespace {

std::optional<ModelKind> kindNamed(const QString& name) {
  if (name == "recognition") return ModelKind::recognition;
  if (name == "punctuation") return ModelKind::punctuation;
  if (name == "translation") return ModelKind::translation;
  if (name == "speakers") return ModelKind::speakers;
  return std::nullopt;
}

std::optional<ModelPacking> packingNamed(const QString& name) {
  if (name == "none") return ModelPacking::none;
  if (name == "gzip") return ModelPacking::gzip;
  if (name == "zstd") return ModelPacking::zstd;
  if (name == "archive") return ModelPacking::archive;
  return std::nullopt;
}

/// Far above any model, and sums of sizes cannot overflow.
constexpr std::int64_t kMaxBytes = 1'000'000'000'000;

bool isPlainName(const QString& name) {
  static const QRegularExpression plain("\\A[A-Za-z0-9_][A-Za-z0-9_.,+-]*\\z");
  return plain.match(name).hasMatch();
}

bool isSha256(const QByteArray& text) {
  static const QRegularExpression hexadecimal("\\A[0-9a-f]{64}\\z");
  return hexadecimal.match(QString::fromLatin1(text)).hasMatch();
}

std::int64_t readBytes(const QJsonObject& object, const QString& key) {
  return object.value(key).toInteger();
}

QByteArray readHash(const QJsonObject& object) {
  return object["sha256"].toString().toLatin1();
}

/// `address`, and the `mirrors` of the same file.
QStringList readAddresses(const QJsonObject& object, const CatalogueChecker& checker) {
  QStringList addresses;
  if (object.contains("address")) addresses.append(object["address"].toString());
  for (const auto& mirror : object["mirrors"].toArray()) addresses.append(mirror.toString());
  for (const QString& address : addresses) {
    checker.require(isSafeModelAddress(QUrl(address)), "an address is not HTTPS");
  }
  return addresses;
}

ModelFile readFile(const QJsonObject& object, const CatalogueChecker& checker) {
  ModelFile file{object["name"].toString(), readBytes(object, "bytes"), readHash(object), {}};
  checker.require(isPlainName(file.name), "a file's name is missing or not plain");
  checker.require(file.bytes >= 0 && file.bytes <= kMaxBytes, "a file's size is impossible");
  checker.require(file.sha256.isEmpty() || isSha256(file.sha256), "a file's hash is not SHA-256");
  file.addresses = readAddresses(object, checker);
  checker.require(file.addresses.isEmpty() || (file.bytes > 0 && !file.sha256.isEmpty()),
                  "a file with an address has no size or hash");
  return file;
}

ModelDownload readDownload(const QJsonObject& object, const CatalogueChecker& checker) {
  ModelDownload download;
  download.addresses = readAddresses(object, checker);
  checker.require(!download.addresses.isEmpty(), "a download has no address");
  download.bytes = readBytes(object, "bytes");
  download.sha256 = readHash(object);
  checker.require(isPlainName(download.fileName()), "an address does not end in a plain name");
  checker.require(download.bytes > 0 && download.bytes <= kMaxBytes, "a download has no size");
  checker.require(isSha256(download.sha256), "a download has no SHA-256");
  const auto packing = packingNamed(object["packing"].toString("none"));
  checker.require(packing.has_value(), "unknown packing");
  download.packing = *packing;
  const QJsonArray files = object["files"].toArray();
  for (const auto& file : files) download.files.push_back(readFile(file.toObject(), checker));
  const bool isArchive = download.packing == ModelPacking::archive;
  checker.require(isArchive ? !files.isEmpty() : files.size() == 1, "wrong number of files");
  if (download.packing == ModelPacking::none) {
    download.files.front().bytes = download.bytes;
    download.files.front().sha256 = download.sha256;
  }
  return download;
}

std::int64_t sumOfFiles(const Model& model, const CatalogueChecker& checker) {
  std::int64_t sum = 0;
  for (const ModelDownload& download : model.downloads) {
    for (const ModelFile& file : download.files) {
      checker.require(file.bytes > 0, "the installed size is not known");
      sum += file.bytes;
    }
  }
  return sum;
}

Model readModel(const QJsonObject& object) {
  Model model;
  model.id = object["id"].toString();
  const CatalogueChecker checker(model.id);
  checker.require(isPlainName(model.id), "the id is missing or not plain");
  const auto kind = kindNamed(object["kind"].toString());
  checker.require(kind.has_value(), "unknown kind");
  model.kind = *kind;
  model.licence = object["licence"].toString();
  checker.require(!model.licence.isEmpty(), "no licence");
  const QJsonArray languages = object["languages"].toArray();
  for (const auto& language : languages) model.languages.append(language.toString());
  checker.require(!model.languages.isEmpty() && !model.languages.contains(QString()),
                  "no languages");
  model.options = object["options"].toObject();
  readModelFacts(object, checker, model);
  QSet<QString> names;
  const QJsonArray downloads = object["downloads"].toArray();
  for (const auto& download : downloads) {
    model.downloads.push_back(readDownload(download.toObject(), checker));
    for (const ModelFile& file : model.downloads.back().files) {
      checker.require(!names.contains(file.name), "two files of the same name");
      names.insert(file.name);
    }
  }
  checker.require(!model.downloads.empty(), "no downloads");
  model.installedBytes = readBytes(object, "installedBytes");
  checker.require(model.installedBytes <= kMaxBytes, "the installed size is impossible");
  if (model.installedBytes <= 0) model.installedBytes = sumOfFiles(model, checker);
  return model;
}

ModelCatalogue readFrom(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) throw Failure(file.errorString());
  return ModelCatalogue::read(file.readAll());
}

/// Empty if none is named, or if it cannot be read.
ModelCatalogue additionalCatalogue() {
  const QString path = qEnvironmentVariable("VELUN_MODEL_CATALOGUE");
  if (path.isEmpty()) return {};
  try {
    return readFrom(path);
  } catch (const Failure& failure) {
    qWarning("VELUN_MODEL_CATALOGUE is ignored: %s: %s", qUtf8Printable(path),
             qUtf8Printable(failure.errorDescription()));
    return {};
  }
}

}  // namespace

ModelCatalogue ModelCatalogue::builtIn() {
  loadResources();
  ModelCatalogue all = additionalCatalogue();
  for (const char* path :
       {":/models/recognition.json", ":/models/translation.json", ":/models/speakers.json"}) {
    const ModelCatalogue part = readFrom(path);
    for (const Model& model : part.models()) {
      if (!all.find(model.id)) all.models_.push_back(model);
    }
  }
  return all;
}

ModelCatalogue ModelCatalogue::read(const QByteArray& json) {
  QJsonParseError error;
  const QJsonDocument document = QJsonDocument::fromJson(json, &error);
  const CatalogueChecker checker("file");
  checker.require(error.error == QJsonParseError::NoError, qPrintable(error.errorString()));
  checker.require(document.object()["models"].isArray(), "no list of models");
  const QJsonArray list = document.object()["models"].toArray();
  QSet<QString> ids;
  std::vector<Model> models;
  models.reserve(static_cast<std::size_t>(list.size()));
  for (const auto& entry : list) {
    models.push_back(readModel(entry.toObject()));
    const QString& id = models.back().id;
    CatalogueChecker(id).require(!ids.contains(id), "the id occurs twice");
    ids.insert(id);
  }
  return ModelCatalogue(std::move(models));
}

const Model* ModelCatalogue::find(const QString& id) const {
  const auto found = std::find_if(models_.begin(), models_.end(),
                                  [&id](const Model& model) { return model.id == id; });
  return found == models_.end() ? nullptr : &*found;
}

const Model* ModelCatalogue::punctuationFor(const Model& model, const QString& language) const {
  if (model.options["punctuation"] != "none") return nullptr;
  const auto found = std::find_if(models_.begin(), models_.end(), [&language](const Model& each) {
    return each.kind == ModelKind::punctuation && each.languages.contains(language);
  });
  return found == models_.end() ? nullptr : &*found;
}

std::vector<Model> ModelCatalogue::ofKind(ModelKind kind) const {
  std::vector<Model> models;
  std::copy_if(models_.begin(), models_.end(), std::back_inserter(models),
               [kind](const Model& model) { return model.kind == kind; });
  return models;
}

}  // namespace velun
