// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/linux/helper/recognizer_message.h"
#include "platform/speech/linux/helper/streaming_recognizer.h"

#include <memory>

namespace velun {

/// Answers the messages of the program, one after the other, until it closes its end.
class RecognizerService {
 public:
  /// Reads from and writes to file descriptors that stay the caller's. `programFolder` is where the
  /// library is searched from.
  RecognizerService(int input, int output, QString programFolder);
  ~RecognizerService();

  /// Returns the exit code: 0 when the input ended, 1 after a failure, which was sent.
  int run();

 private:
  void serve();
  void answer(const RecognizerMessage& message);
  void configure(const RecognizerSettings& settings);
  void restore(const QString& text);
  void sendResults();
  void send(RecognizerMessage::Kind kind, const QByteArray& body = {});
  StreamingRecognizer& recognizer();

  int input_;
  int output_;
  QString programFolder_;
  std::unique_ptr<Punctuator> punctuator_;
  std::unique_ptr<StreamingRecognizer> recognizer_;
};

}  // namespace velun
