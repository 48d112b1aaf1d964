// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace velun {

/// The configuration of the helper program, sent as JSON in the first message.
struct RecognizerSettings {
  // Paths. A libvosk model has the first two, a transducer of sherpa-onnx the next three, a CTC
  // model one of the two after them; none of them: only punctuation is restored.
  QString voskLibrary;
  QString voskModel;       ///< a folder
  QString voskModelSums;   ///< SHA-256 of its files, in the format of `sha256sum`
  QString voskArchive;     ///< the model's archive, instead of the folder and the sums
  QString voskArchiveSum;  ///< its SHA-256, in hexadecimal
  QString encoder;
  QString decoder;
  QString joiner;
  QString ctc;      ///< of the zipformer2 kind
  QString nemoCtc;  ///< of the NeMo kind
  QString tokens;

  QString modelType;  ///< empty: detected by sherpa-onnx; must be empty for zipformer version 1
  QString language;   ///< of the text, two letters
  bool hearsLanguage = false;   ///< the model takes the language as an option
  bool foldsLetters = false;    ///< the model writes one case only
  bool textFromTokens = false;  ///< join the text from the model's tokens
  bool writesMarks = false;     ///< the model writes punctuation
  /// Restarting the model loses what it knows of the speech so far: never in the middle of speech.
  bool keepsContext = false;
  int leadSilenceMs = 0;         ///< silence fed before the first audio
  int tailSilenceMs = 500;       ///< silence fed to get the last word out of the model
  double endpointSilence = 0.6;  ///< seconds after the last word that end a phrase
  double idleSilence = 2.4;      ///< seconds without any words that reset the model
  double maxPhrase = 20;         ///< seconds without a new line; a longer phrase is ended
  int featureDimension = 80;     ///< NeMo transducers use that of their encoder instead
  QString minimumLibrary;        ///< version of sherpa-onnx that the model needs; empty: any
  int threads = 1;               ///< at most the number of cores

  /// The audio is that of a recording: no drafts are wanted, and every core may be used.
  bool isRecording = false;

  /// Names and terms of the user, one a line, which are preferred where the recognizer can do that;
  /// empty: none.
  QString userWords;

  // Paths of the punctuation model; empty for none.
  QString punctuationModel;
  QString punctuationVocabulary;
  QString punctuationSums;  ///< SHA-256 of both files as in `voskModelSums`; empty: not checked

  QString speakerModel;  ///< path of the speaker model; empty for none

  bool usesVosk() const { return !voskModel.isEmpty() || !voskArchive.isEmpty(); }
  bool hasRecognizer() const { return !tokens.isEmpty(); }
  bool hasPunctuation() const { return !punctuationModel.isEmpty(); }
  bool hasSpeakerModel() const { return !speakerModel.isEmpty(); }

  QByteArray toJson() const;
  /// Missing and invalid members keep their defaults.
  static RecognizerSettings fromJson(const QByteArray& json);

  bool operator==(const RecognizerSettings&) const = default;
};

}  // namespace velun
