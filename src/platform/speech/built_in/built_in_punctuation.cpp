// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/built_in/built_in_punctuation.h"

#include "platform/speech/helper/recognizer_settings.h"
#include "platform/speech/neural/punctuation_helper.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace velun {

namespace {

/// An invalid list: with an empty one nothing would be checked.
const auto kNoSums = QStringLiteral("\n");

}  // namespace

BuiltInPunctuation::BuiltInPunctuation(QString program, QString folder)
    : program_(std::move(program)), helper_(program_), folder_(std::move(folder)) {}

QString BuiltInPunctuation::installedFolder(const QString& programFolder) {
  return QDir::cleanPath(programFolder + "/../share/velun/models/en_US-punctuation");
}

PunctuationRestorer::Factory BuiltInPunctuation::punctuationFactory(const QString& locale) const {
  RecognizerSettings settings;
  settings.language = QStringLiteral("en");
  settings.punctuationModel = folder_ + "/punctuation.onnx";
  settings.punctuationVocabulary = folder_ + "/punctuation.vocab";
  QFile sums(folder_ + "/SHA256SUMS");
  const bool isInstalled = QFileInfo(program_).isExecutable() && QFileInfo(folder_).isDir();
  // Without a valid list, the helper program reports that it is damaged or cannot be read.
  settings.punctuationSums = kNoSums;
  if (sums.open(QIODevice::ReadOnly)) settings.punctuationSums += QString::fromUtf8(sums.readAll());
  if (locale != QLatin1String("en_US") || !isInstalled) return {};
  return [program = helper_, settings]() -> std::unique_ptr<PunctuationRestorer> {
    return std::make_unique<PunctuationHelper>(program, settings);
  };
}

}  // namespace velun
