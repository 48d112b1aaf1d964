// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/vosk_library.h"

#include "platform/speech/helper/file_sums.h"

#include <dlfcn.h>
#include <QDir>
#include <QFileInfo>
#include <stdexcept>
#include <string>

namespace velun::vosk {

namespace {

constexpr auto kFileName = "libvosk.so";
/// The level that libvosk calls silent still prints warnings and errors.
constexpr int kNoMessages = -4;

template <class Function>
void find(void* handle, Function& function, const char* name) {
  function = reinterpret_cast<Function>(dlsym(handle, name));
  if (!function) throw std::runtime_error(std::string("the library has no ") + name);
}

Library open(const QString& path) {
  checkFile(path, kLibrarySha256);
  void* handle = dlopen(QFile::encodeName(path).constData(), RTLD_NOW | RTLD_LOCAL);
  if (!handle) throw std::runtime_error(dlerror());
  Library library = {};
  find(handle, library.setLogLevel, "vosk_set_log_level");
  find(handle, library.createModel, "vosk_model_new");
  find(handle, library.destroyModel, "vosk_model_free");
  find(handle, library.createRecognizer, "vosk_recognizer_new");
  find(handle, library.destroyRecognizer, "vosk_recognizer_free");
  find(handle, library.setWords, "vosk_recognizer_set_words");
  find(handle, library.acceptWaveform, "vosk_recognizer_accept_waveform_f");
  find(handle, library.partialResult, "vosk_recognizer_partial_result");
  find(handle, library.result, "vosk_recognizer_result");
  find(handle, library.finalResult, "vosk_recognizer_final_result");
  library.setLogLevel(kNoMessages);
  return library;
}

}  // namespace

const Library& load(const QString& path) {
  static const Library library = open(path);
  return library;
}

QString findLibrary(const QString& programFolder) {
  QStringList paths{QDir::cleanPath(programFolder + "/../lib/velun/recognizers/" + kFileName)};
#if defined(VELUN_NODE_MODULES) && defined(__x86_64__)
  paths.append(QString(VELUN_NODE_MODULES "/vosk/lib/linux-x86_64/") + kFileName);
#endif
  for (const QString& path : paths) {
    if (QFileInfo(path).isFile()) return path;
  }
  return {};
}

}  // namespace velun::vosk
