// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/store/file_placement.h"

#include "platform/foundation/file_error.h"
#include "platform/models/store/file_check.h"
#include "platform/models/store/model_store_failures.h"
#include "platform/models/store/move_into_place.h"

#include <algorithm>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>
#include <QStorageInfo>
#include <QUuid>
#include <utility>

namespace velun {

namespace {

constexpr qint64 kBlockBytes = 1 << 20;
/// Before the name of an unfinished copy.
const auto kCopyPrefix = QStringLiteral(".added-");
constexpr qint64 kAbandonedSeconds = 600;

/// A file that can be put into the folder of a model: a download as it is, or one of the files
/// that are packed in it.
struct Part {
  const Model* model = nullptr;
  QString name;  ///< in the model's folder
  std::int64_t bytes = 0;
  QByteArray sha256;
  bool isPacked = false;  ///< unpacked during the installation, then no longer needed
};

std::vector<Part> partsOf(const Model& model, const ModelDownload& download) {
  const bool isPacked = download.packing != ModelPacking::none;
  const QString name = isPacked ? download.fileName() : download.files.front().name;
  std::vector<Part> parts = {{&model, name, download.bytes, download.sha256, isPacked}};
  for (const ModelFile& file : download.files) {
    const bool isKnown = file.bytes > 0 && !file.sha256.isEmpty();
    if (isPacked && isKnown) parts.push_back({&model, file.name, file.bytes, file.sha256, false});
  }
  return parts;
}

std::vector<Part> partsOf(const Model& model) {
  std::vector<Part> parts;
  for (const ModelDownload& download : model.downloads) {
    const std::vector<Part> own = partsOf(model, download);
    parts.insert(parts.end(), own.begin(), own.end());
  }
  return parts;
}

/// The parts that a file of this size can be, those of models that are not installed first.
std::vector<Part> partsOfSize(const ModelCatalogue& catalogue, const ModelInstaller& installer,
                              std::int64_t bytes) {
  std::vector<Part> found;
  for (const Model& model : catalogue.models()) {
    for (const Part& part : partsOf(model)) {
      if (part.bytes == bytes) found.push_back(part);
    }
  }
  std::stable_partition(found.begin(), found.end(), [&installer](const Part& part) {
    return !installer.isInstalled(*part.model);
  });
  return found;
}

/// Copies files into the folders of models, and counts what it has copied.
class Copier {
 public:
  Copier(const ModelInstaller& installer, const std::function<void(double)>& progress,
         const std::stop_token& stop)
      : installer_(installer), progress_(progress), stop_(stop) {}

  /// Copies the file while hashing it. Returns the part that it turned out to be; null if none.
  const Part* copy(const QString& path, const std::vector<Part>& parts) {
    const Part& first = parts.front();
    const QDir root = QFileInfo(installer_.folder(first.model->id)).dir();
    if (!QDir().mkpath(root.path())) throw model_failures::notSaved(root.path());
    const QString temporary =
        root.filePath(kCopyPrefix + QUuid::createUuid().toString(QUuid::WithoutBraces));
    const auto remove = qScopeGuard([&temporary] { QFile::remove(temporary); });
    const QByteArray sha256 = copyHashing(path, temporary, first.bytes);
    const auto part = std::find_if(parts.begin(), parts.end(),
                                   [&sha256](const Part& each) { return each.sha256 == sha256; });
    if (part == parts.end()) return nullptr;
    const QDir target(installer_.folder(part->model->id));
    if (!QDir().mkpath(target.path())) throw model_failures::notSaved(target.path());
    moveIntoPlace(temporary, target.filePath(part->name));
    return &*part;
  }

 private:
  QByteArray copyHashing(const QString& from, const QString& to, std::int64_t bytes) {
    QFile source(from);
    if (!source.open(QIODevice::ReadOnly)) throw model_failures::notRead(source.errorString());
    QFile target(to);
    if (!target.open(QIODevice::WriteOnly)) throw model_failures::notWritten(target);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    std::int64_t done = 0;
    while (true) {
      if (stop_.stop_requested()) throw Cancelled();
      const QByteArray block = source.read(kBlockBytes);
      if (block.isEmpty()) break;
      hash.addData(block);
      if (target.write(block) != block.size()) throw model_failures::notWritten(target);
      done += block.size();
      progress_(std::min(1.0, static_cast<double>(done) / static_cast<double>(bytes)));
    }
    if (source.error() != QFileDevice::NoError) throw model_failures::notRead(source.errorString());
    if (!target.flush()) throw model_failures::notWritten(target);
    return hash.result().toHex();
  }

  const ModelInstaller& installer_;
  const std::function<void(double)>& progress_;
  const std::stop_token& stop_;
};

void checkSpace(const QString& folder, std::int64_t bytes) {
  // The folder need not exist yet.
  QDir existing(folder);
  while (!existing.exists() && existing.cdUp()) continue;
  const std::int64_t free = QStorageInfo(existing).bytesAvailable();
  if (free >= 0 && free < bytes) throw model_failures::noSpace(bytes, free);
}

bool isThere(const QDir& folder, const Part& part) {
  const QFileInfo file(folder.filePath(part.name));
  return file.isFile() && file.size() == part.bytes;
}

/// Whether the folder has the download, or each of its files.
bool isThere(const QDir& folder, const ModelDownload& download, const std::vector<Part>& parts) {
  if (isThere(folder, parts.front())) return true;
  return parts.size() == download.files.size() + 1 &&
         std::all_of(parts.begin() + 1, parts.end(),
                     [&folder](const Part& part) { return isThere(folder, part); });
}

/// Takes what lies beside the file. Returns the names of what is still missing.
QStringList takeNeighbours(const Model& model, const QString& path, const ModelInstaller& installer,
                           Copier& copier) {
  const QDir folder(installer.folder(model.id));
  const QDir neighbours = QFileInfo(path).dir();
  QStringList missing;
  for (const ModelDownload& download : model.downloads) {
    const std::vector<Part> parts = partsOf(model, download);
    for (const Part& part : parts) {
      const QStringList names = {part.name, download.fileName()};
      for (const QString& name : names) {
        if (isThere(folder, download, parts)) break;
        const QFileInfo file(neighbours.filePath(name));
        const bool canBeIt = file.isFile() && file.size() == part.bytes;
        if (canBeIt) copier.copy(file.filePath(), {part});
      }
    }
    if (!isThere(folder, download, parts)) missing.append(parts.front().name);
  }
  return missing;
}

void removePackedCopies(const Model& model, const ModelInstaller& installer) {
  for (const Part& part : partsOf(model)) {
    if (part.isPacked) QFile::remove(QDir(installer.folder(model.id)).filePath(part.name));
  }
}

}  // namespace

PlacedModelFile placeModelFile(const ModelCatalogue& catalogue, const ModelInstaller& installer,
                               const QString& path, const std::function<void(double)>& progress,
                               const std::stop_token& stop) {
  const QFileInfo file(path);
  if (!file.isFile()) throw model_failures::notRead(path);
  const std::vector<Part> parts = partsOfSize(catalogue, installer, file.size());
  if (parts.empty()) throw model_failures::unknownFile(file.fileName());
  checkSpace(installer.folder(parts.front().model->id), file.size());
  Copier copier(installer, progress, stop);
  const Part* part = copier.copy(path, parts);
  if (!part) throw model_failures::unknownFile(file.fileName());
  const Model& model = *part->model;
  PlacedModelFile placed{model.id, takeNeighbours(model, path, installer, copier)};
  if (placed.missing.isEmpty()) {
    if (!installer.installPlaced(model, stop)) throw model_failures::unknownFile(file.fileName());
    removePackedCopies(model, installer);
  }
  return placed;
}

void setAsideAbandonedCopies(const QString& root, const QString& target, const QDateTime& now) {
  const QDir folder(root);
  const QDateTime latest = now.addSecs(-kAbandonedSeconds);
  for (const QFileInfo& copy :
       folder.entryInfoList({kCopyPrefix + u'*'}, QDir::Files | QDir::Hidden)) {
    if (copy.lastModified() > latest || !QDir().mkpath(target)) continue;
    QDir().rename(copy.filePath(), target + u'/' + copy.fileName());
  }
}

}  // namespace velun
