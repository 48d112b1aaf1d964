// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/vosk_decoder.h"

#include "platform/speech/helper/favouring_model.h"
#include "platform/speech/helper/file_sums.h"
#include "platform/speech/helper/model_archive.h"
#include "platform/speech/helper/shared_model.h"

#include <algorithm>
#include <malloc.h>
#include <numeric>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <stdexcept>
#include <utility>

namespace velun {

namespace {

constexpr float kSampleRate = 16000;
constexpr float kFullScale = 32767;
/// libvosk decodes in steps of 0.2 s.
constexpr std::size_t kPiece = 3200;
/// How libvosk writes a word that it does not know.
const auto kUnknownWord = QStringLiteral("[unk]");
/// Seconds from the end of a word to its first guess (median), and the lengths of words, for the
/// times in drafts.
constexpr double kWordDelay = 0.5;
constexpr double kMinWordSeconds = 0.05;
constexpr double kMaxWordSeconds = 0.6;
/// Seconds before the first word: what `PhraseDetector` takes from before the voice.
constexpr double kLead = 0.4;
/// Seconds. A recognizer keeps what it has computed for the words that it heard, up to 250 MB.
constexpr double kMaxHeardSeconds = 40;

}  // namespace

double meanConfidence(const HeardWords& words) {
  if (words.empty()) return 0;
  const double sum =
      std::accumulate(words.begin(), words.end(), 0.0,
                      [](double all, const RecognizedWord& word) { return all + word.confidence; });
  return sum / static_cast<double>(words.size());
}

VoskDecoder::VoskDecoder(const vosk::Library& library, const RecognizerSettings& settings)
    : VoskDecoder(library, shared(library, settings)) {}

VoskDecoder::VoskDecoder(const vosk::Library& library, std::shared_ptr<Model> model)
    : library_(library), model_(std::move(model)), recognizer_(create()) {}

std::shared_ptr<VoskDecoder::Model> VoskDecoder::shared(const vosk::Library& library,
                                                        const RecognizerSettings& settings) {
  static SharedModel<Model> models;
  return models.get(settings, [&] { return load(library, settings); });
}

std::shared_ptr<VoskDecoder::Model> VoskDecoder::load(const vosk::Library& library,
                                                      const RecognizerSettings& settings) {
  if (!settings.voskArchive.isEmpty()) {
    const ModelArchive archive(settings.voskArchive, settings.voskArchiveSum.toLatin1());
    return load(library, archive.folder(), settings.userWords);
  }
  checkFiles(settings.voskModel, settings.voskModelSums.toUtf8());
  return load(library, settings.voskModel, settings.userWords);
}

std::shared_ptr<VoskDecoder::Model> VoskDecoder::load(const vosk::Library& library,
                                                      const QString& folder,
                                                      const QString& userWords) {
  // Its files are needed only while they are being loaded.
  std::unique_ptr<FavouringModel> favouring;
  if (!userWords.isEmpty()) favouring = FavouringModel::make(folder, userWords);
  const QString loaded = favouring ? favouring->folder() : folder;
  auto model = std::make_shared<Model>(library.destroyModel);
  model->model.reset(library.createModel(QFile::encodeName(loaded).constData()));
  if (!model->model) throw std::runtime_error("the speech model cannot be loaded");
  return model;
}

VoskDecoder::Recognizer VoskDecoder::create() const {
  const std::lock_guard lock(model_->mutex);
  Recognizer recognizer(library_.createRecognizer(model_->model.get(), kSampleRate),
                        library_.destroyRecognizer);
  if (!recognizer) throw std::runtime_error("the speech model cannot be used");
  library_.setWords(recognizer.get(), 1);
  return recognizer;
}

void VoskDecoder::release() {
  if (!recognizer_) return;
  const std::lock_guard lock(model_->mutex);
  recognizer_.reset();
}

void VoskDecoder::accept(std::span<const float> samples) {
  std::vector<float> scaled;
  for (std::size_t at = 0; at < samples.size(); at += kPiece) {
    const auto piece = samples.subspan(at, std::min(kPiece, samples.size() - at));
    scaled.resize(piece.size());
    std::transform(piece.begin(), piece.end(), scaled.begin(),
                   [](float sample) { return sample * kFullScale; });
    const auto count = static_cast<int>(scaled.size());
    if (library_.acceptWaveform(recognizer_.get(), scaled.data(), count) < 0) {
      throw std::runtime_error("the speech could not be decoded");
    }
    heard_ += piece.size();
  }
}

const HeardWords& VoskDecoder::words() {
  const QJsonObject object =
      QJsonDocument::fromJson(library_.partialResult(recognizer_.get())).object();
  QStringList texts = object["partial"].toString().split(u' ', Qt::SkipEmptyParts);
  texts.removeAll(kUnknownWord);
  const double now = static_cast<double>(heard_ - phraseBegin_) / kSampleRate;
  HeardWords words;
  for (const QString& text : texts) {
    // A word keeps its times when the guesses differ about it.
    const std::size_t index = words.size();
    const double end = index < draft_.size() ? draft_[index].end : now - kWordDelay;
    const double earliest = words.empty() ? kLead : words.back().end;
    const double start = index < draft_.size() ? draft_[index].start : end - kMaxWordSeconds;
    words.push_back({text, std::max(start, earliest), end, 1});
    words.back().end = std::max(end, words.back().start + kMinWordSeconds);
  }
  draft_ = std::move(words);
  return draft_;
}

HeardWords VoskDecoder::endAndKeepVoice() {
  return take(library_.result(recognizer_.get()));
}

HeardWords VoskDecoder::end() {
  return take(library_.finalResult(recognizer_.get()));
}

HeardWords VoskDecoder::take(const char* json) {
  const double begin = static_cast<double>(phraseBegin_) / kSampleRate;
  const QJsonObject object = QJsonDocument::fromJson(json).object();
  HeardWords words;
  for (const QJsonValue& each : object["result"].toArray()) {
    const QString text = each["word"].toString();
    if (text.isEmpty() || text == kUnknownWord) continue;
    words.push_back({text, each["start"].toDouble() - begin, each["end"].toDouble() - begin,
                     each["conf"].toDouble()});
  }
  phraseBegin_ = heard_;
  draft_.clear();
  return words;
}

void VoskDecoder::releaseMemory() {
  if (static_cast<double>(heard_) > kMaxHeardSeconds * kSampleRate) {
    release();
    recognizer_ = create();
    heard_ = 0;
    phraseBegin_ = 0;
  }
  malloc_trim(0);
}

}  // namespace velun
