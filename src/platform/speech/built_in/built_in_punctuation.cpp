// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/built_in/built_in_punctuation.h"

#include "platform/speech/helper/recognizer_settings.h"
#include "platform/speech/neural/punctuation_helper.h"

#include <QDir>
#include <QFileInfo>

namespace velun {

BuiltInPunctuation::BuiltInPunctuation(QString program, QString folder)
    : program_(std::move(program)), folder_(std::move(folder)) {}

QString BuiltInPunctuation::installedFolder(const QString& programFolder) {
  return QDir::cleanPath(programFolder + "/../share/velun/models/en_US-punctuation");
}

PunctuationRestorer::Factory BuiltInPunctuation::punctuationFactory(const QString& locale) const {
  RecognizerSettings settings;
  settings.language = QStringLiteral("en");
  settings.punctuationModel = folder_ + "/punctuation.onnx";
  settings.punctuationVocabulary = folder_ + "/punctuation.vocab";
  const bool isInstalled = QFileInfo(program_).isExecutable() &&
                           QFileInfo(settings.punctuationModel).isFile() &&
                           QFileInfo(settings.punctuationVocabulary).isFile();
  if (locale != QLatin1String("en_US") || !isInstalled) return {};
  return [program = program_, settings]() -> std::unique_ptr<PunctuationRestorer> {
    return std::make_unique<PunctuationHelper>(program, settings, true);
  };
}

}  // namespace velun
