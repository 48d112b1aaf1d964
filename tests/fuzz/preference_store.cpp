// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/file_preferences.h"
#include "require.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace velun;
using fuzz::require;

namespace {

/// In memory where the system has such a folder: every run writes files.
QString folderTemplate() {
  const QString memory = QStringLiteral("/dev/shm");
  return (QFileInfo(memory).isWritable() ? memory : QDir::tempPath()) + "/velun-fuzz-XXXXXX";
}

}  // namespace

/// Whatever the file holds, the store opens and keeps what is set from then on; a file that was
/// not understood is still there, under its other name.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  static const QTemporaryDir folder(folderTemplate());
  const QString path = folder.filePath("preferences.json");
  const QString damaged = path + ".damaged";
  QFile::remove(damaged);
  {
    QFile file(path);
    require(file.open(QIODevice::WriteOnly), "the file can be written");
    file.write(reinterpret_cast<const char*>(data), static_cast<qint64>(size));
  }
  FilePreferences preferences(path);
  const bool isUnderstood = QFile::exists(path);
  require(isUnderstood != QFile::exists(damaged), "what is not understood is set aside");
  const std::optional<PreferenceValue> before = preferences.value("targetID");
  preferences.set("fontSize", 18.5);
  const FilePreferences again(path);
  require(again.get<double>("fontSize") == 18.5, "a set value comes back");
  require(again.value("targetID") == before, "and the others stay");
  return 0;
}
