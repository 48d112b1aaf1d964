// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/streaming_recognizer.h"

#include "platform/speech/helper/caption_text.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <QFile>
#include <stdexcept>
#include <thread>
#include <utility>

namespace velun {

namespace {

constexpr int kRate = 16000;
constexpr int kFeatureDimension = 80;

/// Long audio is decoded in pieces of 0.1 s, so that there are drafts in between.
constexpr std::size_t kPiece = kRate / 10;

/// Seconds of silence after which a stream without any words is reset.
constexpr float kIdleSilence = 2.4F;
/// Seconds. A phrase is ended at the maximum, and `kLongPhrase` after its last line by a shorter
/// silence, which must be longer than the overlap so that the last word is not decoded twice.
constexpr float kMaxPhrase = 20.0F;
constexpr double kLongPhrase = 8.0;
constexpr double kLongPhraseSilence = 0.36;

/// A new stream starts with the audio of the old one from this many seconds before its last step.
constexpr double kOverlap = 0.3;

std::size_t samplesOf(double seconds) {
  return static_cast<std::size_t>(std::lround(seconds * kRate));
}

float usable(float sample) {
  return std::isfinite(sample) ? std::clamp(sample, -1.0F, 1.0F) : 0.0F;
}

const void* create(const sherpa::Library& library, const RecognizerSettings& settings) {
  const auto path = [](const QString& text) {
    return QFile::encodeName(text);
  };
  const QByteArray encoder = path(settings.encoder);
  const QByteArray decoder = path(settings.decoder);
  const QByteArray joiner = path(settings.joiner);
  const QByteArray ctc = path(settings.ctc);
  const QByteArray nemoCtc = path(settings.nemoCtc);
  const QByteArray tokens = path(settings.tokens);
  const QByteArray modelType = settings.modelType.toUtf8();
  const int cores = std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
  sherpa::RecognizerConfig config = {};
  config.sampleRate = kRate;
  config.featureDimension = kFeatureDimension;
  config.model.encoder = encoder.constData();
  config.model.decoder = decoder.constData();
  config.model.joiner = joiner.constData();
  config.model.zipformer2Ctc = ctc.constData();
  config.model.nemoCtc = nemoCtc.constData();
  config.model.tokens = tokens.constData();
  config.model.threads = std::clamp(settings.threads, 1, cores);
  config.model.provider = "cpu";
  config.model.modelType = modelType.constData();
  config.decodingMethod = "greedy_search";
  config.detectsEndpoints = 1;
  config.rule1Silence = kIdleSilence;
  config.rule2Silence = static_cast<float>(std::clamp(settings.endpointSilence, 0.2, 2.0));
  config.rule3Length = kMaxPhrase;
  return library.createRecognizer(&config);
}

}  // namespace

StreamingRecognizer::StreamingRecognizer(const sherpa::Library& library,
                                         const RecognizerSettings& settings,
                                         const Punctuator* punctuator)
    : library_(library),
      settings_(settings),
      punctuator_(punctuator),
      lines_(settings.language),
      steps_(checkRecognitionModel(settings)),
      recognizer_(create(library, settings), library.destroyRecognizer),
      stream_(nullptr, library.destroyStream) {
  if (!recognizer_) throw std::runtime_error("the model cannot be loaded");
  beginStream();
}

void StreamingRecognizer::beginStream() {
  stream_.reset(library_.createStream(recognizer_.get()));
  if (!stream_) throw std::runtime_error("the model cannot be started");
  if (settings_.hearsLanguage) {
    library_.setOption(stream_.get(), "language", settings_.language.toUtf8().constData());
  }
  recent_.clear();
  fed_ = 0;
  stepCount_ = 0;
  phraseBegin_ = 0;
  lastWord_ = 0;
  lineBegin_ = 0;
  text_.clear();
}

void StreamingRecognizer::accept(std::span<const float> samples) {
  for (std::size_t at = 0; at < samples.size(); at += kPiece) {
    const auto piece = samples.subspan(at, std::min(kPiece, samples.size() - at));
    std::vector<float> clean(piece.size());
    std::transform(piece.begin(), piece.end(), clean.begin(), usable);
    feed(gain_.amplified(clean));
    decodeReady();
  }
}

void StreamingRecognizer::feed(std::span<const float> samples) {
  library_.acceptWaveform(stream_.get(), kRate, samples.data(),
                          static_cast<std::int32_t>(samples.size()));
  fed_ += samples.size();
  recent_.insert(recent_.end(), samples.begin(), samples.end());
  const std::size_t kept = samplesOf(2 * steps_.window + steps_.step + 1);
  if (recent_.size() > 2 * kept) {
    recent_.erase(recent_.begin(), recent_.end() - static_cast<std::ptrdiff_t>(kept));
  }
}

void StreamingRecognizer::decodeReady() {
  // Checked before every step: sherpa-onnx ends the process when there is not enough audio.
  while (library_.isReady(recognizer_.get(), stream_.get())) {
    library_.decode(recognizer_.get(), stream_.get());
    ++stepCount_;
    readResult();
    const bool isLong = segmentSeconds() - lineBegin_ > kLongPhrase && isInPhrase() &&
                        segmentSeconds() - lastWord_ > kLongPhraseSilence;
    if (isLong || library_.isEndpoint(recognizer_.get(), stream_.get())) {
      endPhrase();
    }
  }
}

double StreamingRecognizer::segmentSeconds() const {
  return static_cast<double>(stepCount_) * steps_.step - phraseBegin_;
}

void StreamingRecognizer::readResult() {
  const std::unique_ptr<const sherpa::Result, void (*)(const sherpa::Result*)> result(
      library_.result(recognizer_.get(), stream_.get()), library_.destroyResult);
  if (!result) return;
  if (result->times && result->count > 0) lastWord_ = result->times[result->count - 1];
  QString text;
  if (settings_.textFromTokens) {
    QStringList tokens;
    for (int i = 0; i < result->count; ++i) tokens.append(QString::fromUtf8(result->tokens[i]));
    text = textOfTokens(tokens);
  } else {
    text = printable(QString::fromUtf8(result->text));
  }
  text = cased(text, settings_.language, settings_.foldsLetters);
  if (text == text_) return;
  text_ = text;
  // Punctuated like the final result, so that no word changes when the draft is replaced.
  const QString draft = punctuator_ ? withoutEnd(punctuator_->punctuated(text)) : text;
  const std::size_t finalCount = lines_.finalCount();
  take(lines_.update(draft));
  if (lines_.finalCount() != finalCount) lineBegin_ = segmentSeconds();
}

void StreamingRecognizer::take(PhraseLines::Results results) {
  std::move(results.begin(), results.end(), std::back_inserter(results_));
}

void StreamingRecognizer::deliverFinal() {
  take(lines_.finish(punctuator_ ? punctuator_->punctuated(text_) : text_));
}

void StreamingRecognizer::endPhrase() {
  const bool isForced = segmentSeconds() - lastWord_ < kOverlap + 0.05;
  const bool wasEmpty = lines_.isEmpty();
  deliverFinal();
  // A transducer that keeps the tokens of the last phrase loses the first word of the next one if
  // it begins with the same token. A new stream does not; feed it the audio that the old one has
  // not decoded, preceded by a little silence. When a phrase is cut in a word there is no such
  // silence.
  if (steps_.remembersTokens && !isForced && !wasEmpty) {
    const double decoded = static_cast<double>(stepCount_) * steps_.step;
    const std::size_t again = fed_ - std::min(fed_, samplesOf(std::max(0.0, decoded - kOverlap)));
    const std::size_t count = std::min(again, recent_.size());
    const std::vector<float> end(recent_.end() - static_cast<std::ptrdiff_t>(count), recent_.end());
    beginStream();
    feed(end);
  } else {
    library_.reset(recognizer_.get(), stream_.get());
    phraseBegin_ = static_cast<double>(stepCount_) * steps_.step;
    lastWord_ = 0;
    lineBegin_ = 0;
    text_.clear();
  }
}

void StreamingRecognizer::finalize() {
  const double tail = std::max(settings_.tailSilenceMs / 1000.0, steps_.window + steps_.step);
  const std::vector<float> silence(samplesOf(tail), 0.0F);
  accept(silence);
  deliverFinal();
  beginStream();
}

void StreamingRecognizer::skip() {
  deliverFinal();
  beginStream();
}

std::vector<TranscriptionResult> StreamingRecognizer::takeResults() {
  return std::exchange(results_, {});
}

}  // namespace velun
