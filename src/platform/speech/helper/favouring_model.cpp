// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/favouring_model.h"

#include "platform/speech/helper/memory_file.h"
#include "platform/speech/helper/ngram_file.h"

#include <optional>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <stdexcept>

namespace velun {

namespace {

const auto kLanguageModel = QStringLiteral("graph/Gr.fst");
/// Chosen by measurement: docs/recognition.md, “Names and terms”.
constexpr float kGain = 4;

void link(const QString& target, const QString& path) {
  const bool isMade = QDir().mkpath(path.section(u'/', 0, -2)) && QFile::link(target, path);
  if (!isMade) throw std::runtime_error("no temporary folder for the speech model");
}

/// Nullopt for one of another kind, as some downloaded models have it.
std::optional<NgramFile> readLanguageModel(const QString& path) {
  try {
    return NgramFile::read(path);
  } catch (const std::runtime_error&) {
    return std::nullopt;
  }
}

}  // namespace

std::unique_ptr<FavouringModel> FavouringModel::make(const QString& model,
                                                     const QString& userWords) {
  std::optional<NgramFile> words = readLanguageModel(QDir(model).filePath(kLanguageModel));
  if (!words) return nullptr;
  words->favour(wordsToFavour(userWords), kGain);
  return std::unique_ptr<FavouringModel>(new FavouringModel(model, words->bytes()));
}

FavouringModel::FavouringModel(const QString& model, const QByteArray& languageModel) {
  if (!folder_.isValid()) throw std::runtime_error("no temporary folder for the speech model");
  const QDir original(model);
  QDirIterator files(model, QDir::Files, QDirIterator::Subdirectories);
  while (files.hasNext()) {
    const QString path = files.next();
    const QString name = original.relativeFilePath(path);
    if (name != kLanguageModel) link(original.absoluteFilePath(name), folder_.filePath(name));
  }
  languageModel_ = memoryFile("language-model", languageModel);
  link(pathOfDescriptor(languageModel_), folder_.filePath(kLanguageModel));
}

}  // namespace velun
