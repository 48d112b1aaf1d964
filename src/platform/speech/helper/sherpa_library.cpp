// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/sherpa_library.h"

#include <dlfcn.h>
#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <stdexcept>
#include <string>

namespace velun::sherpa {

namespace {

constexpr auto kFileName = "libsherpa-onnx-c-api.so";

#if defined(__aarch64__)
constexpr auto kPackage = "sherpa-onnx-linux-arm64";
#else
constexpr auto kPackage = "sherpa-onnx-linux-x64";
#endif

template <class Function>
void find(void* handle, Function& function, const char* name) {
  function = reinterpret_cast<Function>(dlsym(handle, name));
  if (!function) throw std::runtime_error(std::string("the library has no ") + name);
}

Library open(const QString& path) {
  void* handle = dlopen(QFile::encodeName(path).constData(), RTLD_NOW | RTLD_LOCAL);
  if (!handle) throw std::runtime_error(dlerror());
  Library library = {};
  find(handle, library.version, "SherpaOnnxGetVersionStr");
  find(handle, library.createRecognizer, "SherpaOnnxCreateOnlineRecognizer");
  find(handle, library.destroyRecognizer, "SherpaOnnxDestroyOnlineRecognizer");
  find(handle, library.createStream, "SherpaOnnxCreateOnlineStream");
  find(handle, library.destroyStream, "SherpaOnnxDestroyOnlineStream");
  find(handle, library.acceptWaveform, "SherpaOnnxOnlineStreamAcceptWaveform");
  find(handle, library.isReady, "SherpaOnnxIsOnlineStreamReady");
  find(handle, library.decode, "SherpaOnnxDecodeOnlineStream");
  find(handle, library.result, "SherpaOnnxGetOnlineStreamResult");
  find(handle, library.destroyResult, "SherpaOnnxDestroyOnlineRecognizerResult");
  find(handle, library.reset, "SherpaOnnxOnlineStreamReset");
  find(handle, library.isEndpoint, "SherpaOnnxOnlineStreamIsEndpoint");
  find(handle, library.setOption, "SherpaOnnxOnlineStreamSetOption");
  find(handle, library.createPunctuation, "SherpaOnnxCreateOnlinePunctuation");
  find(handle, library.destroyPunctuation, "SherpaOnnxDestroyOnlinePunctuation");
  find(handle, library.addPunctuation, "SherpaOnnxOnlinePunctuationAddPunct");
  find(handle, library.freePunctuated, "SherpaOnnxOnlinePunctuationFreeText");
  find(handle, library.createSpeakerModel, "SherpaOnnxCreateSpeakerEmbeddingExtractor");
  find(handle, library.destroySpeakerModel, "SherpaOnnxDestroySpeakerEmbeddingExtractor");
  find(handle, library.printSize, "SherpaOnnxSpeakerEmbeddingExtractorDim");
  find(handle, library.createPrintStream, "SherpaOnnxSpeakerEmbeddingExtractorCreateStream");
  find(handle, library.inputFinished, "SherpaOnnxOnlineStreamInputFinished");
  find(handle, library.canPrint, "SherpaOnnxSpeakerEmbeddingExtractorIsReady");
  find(handle, library.print, "SherpaOnnxSpeakerEmbeddingExtractorComputeEmbedding");
  find(handle, library.destroyPrint, "SherpaOnnxSpeakerEmbeddingExtractorDestroyEmbedding");
  return library;
}

}  // namespace

const Library& load(const QString& path) {
  static const Library library = open(path);
  return library;
}

QVersionNumber versionBeside(const QString& libraryPath) {
  QFile file(QFileInfo(libraryPath).dir().filePath("package.json"));
  if (!file.open(QIODevice::ReadOnly)) return {};
  const QJsonObject package = QJsonDocument::fromJson(file.readAll()).object();
  return QVersionNumber::fromString(package["version"].toString());
}

void requireVersion(const Library& library, const QString& minimum) {
  const QString version = library.version();
  if (QVersionNumber::fromString(version) >= QVersionNumber::fromString(minimum)) return;
  throw std::runtime_error(QString("the model needs sherpa-onnx %1 or newer, but %2 is installed")
                               .arg(minimum, version)
                               .toStdString());
}

QStringList candidatePaths(const QString& programFolder) {
  QStringList paths;
  const QString own = qEnvironmentVariable("VELUN_RECOGNIZER_LIBRARY");
  if (!own.isEmpty()) paths.append(own);
  paths.append(QDir::cleanPath(programFolder + "/../lib/velun/recognizers/" + kFileName));
#ifdef VELUN_NODE_MODULES
  paths.append(QString(VELUN_NODE_MODULES "/%1/%2").arg(kPackage, kFileName));
#endif
  return paths;
}

QString findLibrary(const QString& programFolder) {
  for (const QString& path : candidatePaths(programFolder)) {
    if (QFileInfo(path).isFile()) return path;
  }
  return {};
}

}  // namespace velun::sherpa
