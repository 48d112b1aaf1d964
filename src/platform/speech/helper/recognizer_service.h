// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/helper/punctuator.h"
#include "platform/speech/helper/recognizer_message.h"
#include "platform/speech/helper/recognizer_settings.h"
#include "platform/speech/helper/speaker_model.h"
#include "platform/speech/helper/stream_recognizer.h"

#include <memory>

namespace velun {

/// Handles the messages of one connection to the program, one after the other, until the input
/// ends. Several of a process share their models.
class RecognizerService {
 public:
  /// Reads from and writes to file descriptors that the caller owns. `programFolder` is where the
  /// search for sherpa-onnx begins.
  RecognizerService(int input, int output, QString programFolder);
  ~RecognizerService();

  /// Returns the exit code: 0 at the end of input, 1 after a failure, which was reported.
  int run();

 private:
  void serve();
  void handle(const RecognizerMessage& message);
  void configure(const RecognizerSettings& settings);
  void configureSherpa(const RecognizerSettings& settings);
  void restore(const QString& text);
  void describeVoice(std::span<const float> samples);
  void sendResults();
  int fail(RecognizerMessage::Kind kind, const QByteArray& reason);
  void send(RecognizerMessage::Kind kind, const QByteArray& body = {});
  StreamRecognizer& recognizer();

  int input_;
  int output_;
  QString programFolder_;
  std::shared_ptr<Punctuator> punctuator_;
  std::shared_ptr<SpeakerModel> speakerModel_;
  std::unique_ptr<StreamRecognizer> recognizer_;
};

}  // namespace velun
