// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/recognizer_service.h"

#include "platform/speech/helper/file_sums.h"
#include "platform/speech/helper/phrase_recognizer.h"
#include "platform/speech/helper/recording_recognizer.h"
#include "platform/speech/helper/result_codec.h"
#include "platform/speech/helper/sentence_recognizer.h"
#include "platform/speech/helper/shared_model.h"
#include "platform/speech/helper/streaming_recognizer.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <unistd.h>

namespace velun {

using Kind = RecognizerMessage::Kind;

namespace {

QByteArray heardBody(bool isInPhrase, std::chrono::nanoseconds duration) {
  const auto micros = std::chrono::duration_cast<std::chrono::microseconds>(duration).count();
  const auto bounded = static_cast<std::uint32_t>(std::clamp<std::int64_t>(micros, 0, UINT32_MAX));
  QByteArray body(1, isInPhrase ? 1 : 0);
  return body.append(reinterpret_cast<const char*>(&bounded), sizeof bounded);
}

std::vector<float> samplesOf(const QByteArray& body) {
  std::vector<float> samples(static_cast<std::size_t>(body.size()) / sizeof(float));
  // Without samples there may be no array either.
  if (samples.empty()) return samples;
  std::memcpy(samples.data(), body.constData(), samples.size() * sizeof(float));
  return samples;
}

}  // namespace

RecognizerService::RecognizerService(int input, int output, QString programFolder)
    : input_(input), output_(output), programFolder_(std::move(programFolder)) {}

RecognizerService::~RecognizerService() = default;

int RecognizerService::run() {
  try {
    serve();
    return 0;
  } catch (const DamagedFile& file) {
    return fail(Kind::damaged, file.name().toUtf8());
  } catch (const UnreadableFile& file) {
    return fail(Kind::unreadable, QByteArray::number(file.code()) + ' ' + file.name().toUtf8());
  } catch (const std::exception& error) {
    return fail(Kind::failure, error.what());
  }
}

int RecognizerService::fail(Kind kind, const QByteArray& reason) {
  try {
    send(kind, reason);
  } catch (const std::exception&) {
    // The program has closed the connection.
  }
  return 1;
}

void RecognizerService::serve() {
  RecognizerMessageReader reader;
  std::array<char, 65536> buffer;
  while (true) {
    const ssize_t count = ::read(input_, buffer.data(), buffer.size());
    if (count == 0) return;
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw std::runtime_error(std::strerror(errno));
    reader.append(std::span(buffer.data(), static_cast<std::size_t>(count)));
    while (const std::optional<RecognizerMessage> message = reader.next()) handle(*message);
  }
}

void RecognizerService::handle(const RecognizerMessage& message) {
  switch (message.kind) {
    case Kind::configure:
      configure(RecognizerSettings::fromJson(message.body));
      send(Kind::ready);
      break;
    case Kind::audio: {
      const std::vector<float> samples = samplesOf(message.body);
      const auto begin = std::chrono::steady_clock::now();
      recognizer().accept(samples);
      const auto duration = std::chrono::steady_clock::now() - begin;
      sendResults();
      send(Kind::heard, heardBody(recognizer().isInPhrase(), duration));
      break;
    }
    case Kind::finalize:
      recognizer().finalize();
      sendResults();
      send(Kind::settled);
      break;
    case Kind::skip:
      recognizer().skip();
      sendResults();
      break;
    case Kind::restore:
      restore(QString::fromUtf8(message.body));
      break;
    case Kind::speech:
      describeVoice(samplesOf(message.body));
      break;
    default:
      throw std::runtime_error("an unknown message came");
  }
}

void RecognizerService::configure(const RecognizerSettings& settings) {
  if (settings.usesVosk()) {
    const vosk::Library& library = vosk::load(settings.voskLibrary);
    if (settings.isRecording) {
      recognizer_ = std::make_unique<RecordingRecognizer>(library, settings);
    } else {
      recognizer_ = std::make_unique<PhraseRecognizer>(library, settings);
    }
  } else {
    configureSherpa(settings);
  }
}

void RecognizerService::configureSherpa(const RecognizerSettings& settings) {
  const QString path = sherpa::findLibrary(programFolder_);
  if (path.isEmpty()) throw std::runtime_error("the recognition library is missing");
  const sherpa::Library& library = sherpa::load(path);
  sherpa::requireVersion(library, settings.minimumLibrary);
  recognizer_.reset();
  punctuator_.reset();
  if (settings.hasPunctuation()) {
    try {
      static SharedModel<Punctuator> models;
      punctuator_ =
          models.get(settings, [&] { return std::make_shared<Punctuator>(library, settings); });
    } catch (const std::exception&) {
      // Captions without punctuation are better than none.
      if (!settings.hasRecognizer()) throw;
    }
  }
  if (settings.hasSpeakerModel()) {
    static SharedModel<SpeakerModel> models;
    speakerModel_ =
        models.get(settings, [&] { return std::make_shared<SpeakerModel>(library, settings); });
  }
  if (settings.hasRecognizer()) {
    if (settings.keepsContext) {
      recognizer_ = std::make_unique<SentenceRecognizer>(library, settings, punctuator_.get());
    } else {
      recognizer_ = std::make_unique<StreamingRecognizer>(library, settings, punctuator_.get());
    }
  }
}

void RecognizerService::restore(const QString& text) {
  const QString restored = punctuator_ ? punctuator_->punctuated(text) : text;
  send(Kind::restored, restored.toUtf8());
}

void RecognizerService::describeVoice(std::span<const float> samples) {
  if (!speakerModel_) throw std::runtime_error("no speaker model was named");
  const std::vector<float> print = speakerModel_->print(samples);
  const auto bytes = static_cast<qsizetype>(print.size() * sizeof(float));
  send(Kind::voice, QByteArray(reinterpret_cast<const char*>(print.data()), bytes));
}

void RecognizerService::sendResults() {
  for (const TranscriptionResult& result : recognizer().takeResults()) {
    send(result.isFinal ? Kind::final : Kind::draft, encodedResult(result));
  }
}

StreamRecognizer& RecognizerService::recognizer() {
  if (!recognizer_) throw std::runtime_error("no model was named");
  return *recognizer_;
}

void RecognizerService::send(Kind kind, const QByteArray& body) {
  const QByteArray bytes = encoded(kind, body);
  for (qsizetype sent = 0; sent < bytes.size();) {
    const ssize_t count =
        ::write(output_, bytes.constData() + sent, static_cast<std::size_t>(bytes.size() - sent));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw std::runtime_error(std::strerror(errno));
    sent += count;
  }
}

}  // namespace velun
