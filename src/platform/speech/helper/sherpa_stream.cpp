// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/sherpa_stream.h"

#include "platform/speech/helper/hotwords.h"
#include "platform/speech/helper/memory_file.h"
#include "platform/speech/helper/shared_model.h"

#include <algorithm>
#include <cmath>
#include <QFile>
#include <stdexcept>
#include <thread>

namespace velun {

namespace {

constexpr int kRate = 16000;
/// Seconds. Beyond this sherpa-onnx ends a phrase, also in the middle of a word; the recognizers
/// end it between words before.
constexpr float kMaxSegment = 300;

/// What each token of a name or term of the user adds to the logarithm of a hypothesis’ likelihood.
constexpr float kHotwordsScore = 2.0F;

Hotwords hotwordsFor(const RecognizerSettings& settings, const ModelSteps& steps) {
  // Only these transducers have a search that takes them.
  if (settings.userWords.isEmpty() || !steps.remembersTokens) return {};
  QFile tokens(settings.tokens);
  if (!tokens.open(QIODevice::ReadOnly)) return {};
  return makeHotwords(settings.userWords, tokens.readAll());
}

const void* create(const sherpa::Library& library, const RecognizerSettings& settings,
                   const Hotwords& hotwords) {
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
  config.featureDimension = std::clamp(settings.featureDimension, 1, 1000);
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
  config.rule1Silence = static_cast<float>(std::clamp(settings.idleSilence, 0.2, 60.0));
  config.rule2Silence = static_cast<float>(std::clamp(settings.endpointSilence, 0.2, 2.0));
  config.rule3Length = kMaxSegment;
  if (hotwords.text.isEmpty()) return library.createRecognizer(&config);
  // Greedy search has no hypotheses to choose from.
  config.decodingMethod = "modified_beam_search";
  config.hotwordsScore = kHotwordsScore;
  config.hotwordsText = hotwords.text.constData();
  config.hotwordsTextBytes = static_cast<std::int32_t>(hotwords.text.size());
  config.model.modelingUnit = hotwords.unit.constData();
  // sherpa-onnx takes the vocabulary as a file only, and reads it at once.
  const FileDescriptor vocabulary = memoryFile("vocabulary", hotwords.vocabulary);
  const QByteArray vocabularyPath = pathOfDescriptor(vocabulary).toLatin1();
  if (!hotwords.vocabulary.isEmpty()) config.model.bpeVocabulary = vocabularyPath.constData();
  return library.createRecognizer(&config);
}

std::shared_ptr<const void> shared(const sherpa::Library& library,
                                   const RecognizerSettings& settings, const ModelSteps& steps) {
  static SharedModel<const void> models;
  return models.get(settings, [&] {
    std::shared_ptr<const void> model(create(library, settings, hotwordsFor(settings, steps)),
                                      library.destroyRecognizer);
    if (!model) throw std::runtime_error("the model cannot be loaded");
    return model;
  });
}

}  // namespace

SherpaStream::SherpaStream(const sherpa::Library& library, const RecognizerSettings& settings)
    : library_(library),
      settings_(settings),
      steps_(checkRecognitionModel(settings)),
      recognizer_(shared(library, settings, steps_)),
      stream_(nullptr, library.destroyStream) {
  begin();
}

void SherpaStream::begin() {
  stream_.reset(library_.createStream(recognizer_.get()));
  if (!stream_) throw std::runtime_error("the model cannot be started");
  if (settings_.hearsLanguage) {
    library_.setOption(stream_.get(), "language", settings_.language.toUtf8().constData());
  }
  fed_ = 0;
  stepCount_ = 0;
  feedSilence(settings_.leadSilenceMs / 1000.0);
}

void SherpaStream::beginSegment() {
  library_.reset(recognizer_.get(), stream_.get());
}

void SherpaStream::feed(std::span<const float> samples) {
  library_.acceptWaveform(stream_.get(), kRate, samples.data(),
                          static_cast<std::int32_t>(samples.size()));
  fed_ += samples.size();
}

void SherpaStream::feedSilence(double seconds) {
  const std::vector<float> zeros(static_cast<std::size_t>(std::lround(seconds * kRate)), 0.0F);
  if (!zeros.empty()) feed(zeros);
}

bool SherpaStream::decodeStep() {
  // Checked before every step: sherpa-onnx ends the process when there is not enough audio.
  if (!library_.isReady(recognizer_.get(), stream_.get())) return false;
  library_.decode(recognizer_.get(), stream_.get());
  ++stepCount_;
  return true;
}

SherpaStream::Hearing SherpaStream::hearing() const {
  const std::unique_ptr<const sherpa::Result, void (*)(const sherpa::Result*)> result(
      library_.result(recognizer_.get(), stream_.get()), library_.destroyResult);
  Hearing hearing;
  if (!result) return hearing;
  hearing.text = result->text;
  for (int i = 0; i < result->count; ++i) {
    hearing.tokens.push_back({result->tokens[i], result->times ? result->times[i] : 0});
  }
  return hearing;
}

bool SherpaStream::isEndpoint() const {
  return library_.isEndpoint(recognizer_.get(), stream_.get()) != 0;
}

double SherpaStream::fedSeconds() const {
  return static_cast<double>(fed_) / kRate;
}

double SherpaStream::decodedSeconds() const {
  return static_cast<double>(stepCount_) * steps_.step;
}

}  // namespace velun
