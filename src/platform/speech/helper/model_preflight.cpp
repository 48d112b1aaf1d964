// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/model_preflight.h"

#include "platform/speech/helper/onnx_metadata.h"

#include <algorithm>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>
#include <stdexcept>

namespace velun {

namespace {

using Metadata = QHash<QString, QString>;

// The metadata that sherpa-onnx reads for each family of models; '*' marks lists of numbers.
constexpr auto kZipformer2 =
    "encoder_dims* query_head_dims* value_head_dims* num_heads* num_encoder_layers* "
    "cnn_module_kernels* left_context_len* T decode_chunk_len";
constexpr auto kZipformer =
    "encoder_dims* attention_dims* num_encoder_layers* cnn_module_kernels* left_context_len* T "
    "decode_chunk_len";
constexpr auto kLstm = "num_encoder_layers T decode_chunk_len rnn_hidden_size d_model";
constexpr auto kConformer =
    "num_encoder_layers T decode_chunk_len left_context encoder_dim pad_length cnn_module_kernel";
constexpr auto kDecoder = "vocab_size context_size";
constexpr auto kNemo =
    "vocab_size window_size chunk_shift subsampling_factor cache_last_channel_dim1 "
    "cache_last_channel_dim2 cache_last_channel_dim3 cache_last_time_dim1 cache_last_time_dim2 "
    "cache_last_time_dim3";
constexpr auto kNemoTransducer = "pred_rnn_layers pred_hidden";
constexpr auto kPunctuation = "COMMA PERIOD QUESTION UPPER CAP MIX_CASE";

constexpr auto kSpeaker = "output_dim sample_rate normalize_samples";

constexpr double kFrameSeconds = 0.01;

[[noreturn]] void refuse(const QString& path, const QString& why) {
  throw std::runtime_error((QFileInfo(path).fileName() + ": " + why).toStdString());
}

Metadata metadataOf(const QString& path) {
  try {
    return readOnnxMetadata(path);
  } catch (const std::runtime_error& error) {
    refuse(path, error.what());
  }
}

void require(const Metadata& metadata, const char* keys, const QString& path) {
  static const QRegularExpression number("^\\d+$");
  static const QRegularExpression numbers("^\\d+(,\\d+)*$");
  for (QString key : QString(keys).split(' ')) {
    const bool isList = key.endsWith('*');
    if (isList) key.chop(1);
    if (!(isList ? numbers : number).match(metadata.value(key)).hasMatch()) {
      refuse(path, QString("its metadata \"%1\" is missing or wrong").arg(key));
    }
  }
}

ModelSteps makeSteps(const Metadata& metadata, const char* window, const char* step) {
  return {metadata.value(window).toInt() * kFrameSeconds,
          metadata.value(step).toInt() * kFrameSeconds, false};
}

/// sherpa-onnx decides by the encoder's type which metadata a transducer needs; NeMo transducers
/// have none of the known types.
ModelSteps checkTransducer(const RecognizerSettings& settings) {
  const Metadata encoder = metadataOf(settings.encoder);
  const Metadata decoder = metadataOf(settings.decoder);
  metadataOf(settings.joiner);
  if (encoder.contains("pred_rnn_layers")) {
    require(encoder, kNemo, settings.encoder);
    require(encoder, kNemoTransducer, settings.encoder);
    return makeSteps(encoder, "window_size", "chunk_shift");
  }
  static const QHash<QString, const char*> families = {{"zipformer2", kZipformer2},
                                                       {"zipformer", kZipformer},
                                                       {"lstm", kLstm},
                                                       {"conformer", kConformer}};
  const QString type = encoder.value("model_type");
  if (!families.contains(type)) refuse(settings.encoder, "it is of an unknown kind");
  if (!settings.modelType.isEmpty() && settings.modelType != type) {
    refuse(settings.encoder, QString("it is of the kind \"%1\"").arg(type));
  }
  require(encoder, families.value(type), settings.encoder);
  require(decoder, kDecoder, settings.decoder);
  ModelSteps steps = makeSteps(encoder, "T", "decode_chunk_len");
  steps.remembersTokens = true;
  return steps;
}

/// Each line is `symbol id`, or `id` alone for a blank character; the ids have no gaps.
void checkTokens(const QString& path, bool isNemoTransducer) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) refuse(path, "the file cannot be read");
  QSet<int> ids;
  bool hasBlank = false;
  QList<QByteArray> lines = file.readAll().split('\n');
  if (lines.last().isEmpty()) lines.removeLast();
  for (const QByteArray& line : lines) {
    const QList<QByteArray> parts = line.simplified().split(' ');
    bool isNumber = false;
    const int id = parts.last().toInt(&isNumber);
    if (parts.size() > 2 || !isNumber) refuse(path, "a line is damaged");
    ids.insert(id);
    const QByteArray& symbol = parts.first();
    hasBlank |= symbol == "<blk>" || symbol == "<eps>" || symbol == "<blank>";
  }
  if (ids.isEmpty() || *std::min_element(ids.begin(), ids.end()) != 0 ||
      *std::max_element(ids.begin(), ids.end()) != ids.size() - 1) {
    refuse(path, "its token numbers have gaps");
  }
  if (!hasBlank) refuse(path, "it has no blank token");
  if (isNemoTransducer && !lines.last().startsWith("<blk>"))
    refuse(path, "its blank token is not the last one");
}

}  // namespace

ModelSteps checkRecognitionModel(const RecognizerSettings& settings) {
  ModelSteps steps;
  bool isNemoTransducer = false;
  if (!settings.ctc.isEmpty()) {
    const Metadata metadata = metadataOf(settings.ctc);
    require(metadata, kZipformer2, settings.ctc);
    steps = makeSteps(metadata, "T", "decode_chunk_len");
  } else if (!settings.nemoCtc.isEmpty()) {
    const Metadata metadata = metadataOf(settings.nemoCtc);
    require(metadata, kNemo, settings.nemoCtc);
    steps = makeSteps(metadata, "window_size", "chunk_shift");
  } else {
    steps = checkTransducer(settings);
    isNemoTransducer = !steps.remembersTokens;
  }
  checkTokens(settings.tokens, isNemoTransducer);
  if (steps.step <= 0) throw std::runtime_error("the model has no decoding step");
  return steps;
}

void checkPunctuationModel(const RecognizerSettings& settings) {
  require(metadataOf(settings.punctuationModel), kPunctuation, settings.punctuationModel);
  QFile vocabulary(settings.punctuationVocabulary);
  if (!vocabulary.open(QIODevice::ReadOnly)) {
    refuse(settings.punctuationVocabulary, "the file cannot be read");
  }
  static const QRegularExpression line("^\\S+\\s+-?[0-9.eE+-]+$");
  const QList<QByteArray> lines = vocabulary.readAll().split('\n');
  if (!line.match(QString::fromUtf8(lines.first().trimmed())).hasMatch()) {
    refuse(settings.punctuationVocabulary, "it is damaged");
  }
}

void checkSpeakerModel(const RecognizerSettings& settings) {
  const QString& path = settings.speakerModel;
  const Metadata metadata = metadataOf(path);
  require(metadata, kSpeaker, path);
  const QString framework = metadata.value("framework");
  if (framework != "wespeaker" && framework != "3d-speaker") refuse(path, "it is of another kind");
  if (!metadata.contains("language")) refuse(path, "its metadata \"language\" is missing");
  if (metadata.value("sample_rate") != "16000") refuse(path, "it is not for 16 kHz");
}

}  // namespace velun
