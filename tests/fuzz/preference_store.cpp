// SPDX-License-Identifier: GPL-3.0-or-later
#include "memory_folder.h"
#include "platform/foundation/file_preferences.h"
#include "require.h"

using namespace velun;
using fuzz::require;

/// With any file contents, the store opens and keeps new values. A file that cannot be read still
/// exists under its other name.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  const QString path = fuzz::memoryFolder() + "/preferences.json";
  const QString damaged = path + ".damaged";
  QFile::remove(damaged);
  fuzz::put(path, reinterpret_cast<const char*>(data), size);
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
