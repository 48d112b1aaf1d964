// SPDX-License-Identifier: GPL-3.0-or-later
#include "memory_folder.h"
#include "platform/foundation/failure.h"
#include "platform/models/store/unpack.h"
#include "require.h"

using namespace velun;
using fuzz::require;

namespace {

constexpr auto kEverything = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;

QStringList contents(const QString& folder) {
  return QDir(folder).entryList(kEverything, QDir::Name);
}

}  // namespace

/// Any bytes are unpacked or rejected. Only files of the catalogue are written, and only inside the
/// folder. The first byte selects the packing.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  constexpr ModelPacking kPackings[] = {ModelPacking::archive, ModelPacking::gzip,
                                        ModelPacking::zstd};
  ModelDownload download;
  download.packing = kPackings[data[0] % 3];
  download.files.push_back({"model.bin", 0, {}});
  if (download.packing == ModelPacking::archive) download.files.push_back({"tokens.txt", 0, {}});

  const QString root = fuzz::memoryFolder();
  const QString folder = root + "/inside/unpacked";
  require(QDir().mkpath(folder), "the folder can be made");
  fuzz::put(root + "/packed", reinterpret_cast<const char*>(data) + 1, size - 1);
  QStringList expected;
  try {
    unpack(download, root + "/packed", folder, std::stop_token());
    for (const ModelFile& file : download.files) expected.append(file.name);
  } catch (const Failure& failure) {
    require(!descriptionOf(failure).isEmpty(), "a refusal says why");
  }
  require(contents(folder) == expected, "what comes out is what was asked for, or nothing");
  require(contents(root + "/inside") == QStringList{"unpacked"}, "nothing comes out elsewhere");
  require(contents(root) == QStringList{"inside", "packed"}, "nothing comes out elsewhere");
  for (const QString& name : expected) {
    const QFileInfo info(folder + "/" + name);
    require(info.isFile() && !info.isSymLink(), "files are files");
    QFile::remove(info.filePath());
  }
  return 0;
}
