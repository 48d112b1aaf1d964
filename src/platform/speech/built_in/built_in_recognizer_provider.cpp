// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/built_in/built_in_recognizer_provider.h"

#include "language/localization.h"
#include "platform/speech/built_in/built_in_backend.h"
#include "platform/speech/helper/vosk_library.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace velun {

namespace {

const auto kLocale = QStringLiteral("en_US");

RecognizerSettings settingsFor(const BuiltInFiles& files) {
  RecognizerSettings settings;
  settings.voskLibrary = files.library;
  settings.voskModel = files.model;
  QFile sums(files.model + "/SHA256SUMS");
  // The helper program reports an empty list like a damaged file.
  if (sums.open(QIODevice::ReadOnly)) settings.voskModelSums = QString::fromUtf8(sums.readAll());
  return settings;
}

}  // namespace

BuiltInFiles BuiltInFiles::installed(const QString& programFolder) {
  return {programFolder + "/velun-recognizer", vosk::findLibrary(programFolder),
          QDir::cleanPath(programFolder + "/../share/velun/models/" + kLocale)};
}

BuiltInRecognizerProvider::BuiltInRecognizerProvider(
    BuiltInFiles files, std::shared_ptr<PunctuationProvider> punctuation,
    std::shared_ptr<const CaptionStyle> style)
    : files_(std::move(files)),
      helper_(files_.program),
      punctuation_(std::move(punctuation)),
      style_(std::move(style)) {}

QStringList BuiltInRecognizerProvider::supportedLocales() const {
  return {kLocale};
}

std::vector<RecognizerCandidate> BuiltInRecognizerProvider::candidates(
    const QString& locale) const {
  if (locale != kLocale || files_.library.isEmpty()) return {};
  RecognizerCandidate candidate;
  candidate.id = QStringLiteral("built-in");
  candidate.title = L("Built-in recognizer", "내장 인식기");
  candidate.isInstalled =
      QFileInfo(files_.program).isExecutable() && QFileInfo(files_.model).isDir();
  return {candidate};
}

RecognizerProvider::Factory BuiltInRecognizerProvider::makeFactory(const QString& locale,
                                                                   const QString& /*id*/) const {
  PunctuationRestorer::Factory marks;
  if (punctuation_) marks = punctuation_->punctuationFactory(locale);
  return [files = files_, program = helper_, marks, style = style_,
          userWords = style_->userWords]() -> std::unique_ptr<RecognizerBackend> {
    RecognizerSettings settings = settingsFor(files);
    settings.userWords = userWords;
    return std::make_unique<BuiltInBackend>(program, settings, marks ? marks() : nullptr, style);
  };
}

}  // namespace velun
