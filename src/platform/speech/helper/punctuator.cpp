// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/punctuator.h"

#include "platform/speech/helper/file_sums.h"
#include "platform/speech/helper/model_preflight.h"

#include <QFile>
#include <QFileInfo>
#include <stdexcept>

namespace velun {

namespace {

/// The letters and digits alone, which restoring punctuation must not change.
QString lettersOf(const QString& text) {
  QString letters;
  for (const QChar each : text.toLower()) {
    if (each.isLetterOrNumber()) letters += each;
  }
  return letters;
}

}  // namespace

Punctuator::Punctuator(const sherpa::Library& library, const RecognizerSettings& settings)
    : library_(library), model_(nullptr, library.destroyPunctuation) {
  if (!settings.punctuationSums.isEmpty()) {
    checkFiles(QFileInfo(settings.punctuationModel).path(), settings.punctuationSums.toUtf8());
  }
  checkPunctuationModel(settings);
  const QByteArray model = QFile::encodeName(settings.punctuationModel);
  const QByteArray vocabulary = QFile::encodeName(settings.punctuationVocabulary);
  const sherpa::PunctuationConfig config = {model.constData(), vocabulary.constData(), 1, 0, "cpu"};
  model_.reset(library.createPunctuation(&config));
  if (!model_) throw std::runtime_error("the punctuation model cannot be loaded");
}

QString Punctuator::punctuated(const QString& text) const {
  if (text.isEmpty()) return text;
  try {
    const QByteArray words = text.toLower().toUtf8();
    const std::lock_guard lock(mutex_);
    const char* answer = library_.addPunctuation(model_.get(), words.constData());
    if (!answer) return text;
    const QString result = QString::fromUtf8(answer).simplified();
    library_.freePunctuated(answer);
    return lettersOf(result) == lettersOf(text) ? result : text;
  } catch (const std::exception&) {
    return text;
  }
}

}  // namespace velun
