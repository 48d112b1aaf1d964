// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace velun {

/// What the helper program is told to do, as JSON in its first message.
struct RecognizerSettings {
  // Paths. A transducer has the first three, a CTC model one of the next two; none of them: only
  // punctuation is restored.
  QString encoder;
  QString decoder;
  QString joiner;
  QString ctc;      ///< of the zipformer2 kind
  QString nemoCtc;  ///< of the NeMo kind
  QString tokens;

  QString modelType;  ///< empty: the library finds out; must be empty for zipformer version 1
  QString language;   ///< two letters; of the text
  bool hearsLanguage = false;    ///< the model is told the language
  bool foldsLetters = false;     ///< the model writes one case only
  bool textFromTokens = false;   ///< the model's text has to be put together from its tokens
  int tailSilenceMs = 500;       ///< silence that brings out the last word
  double endpointSilence = 0.6;  ///< seconds after the last word that end a phrase
  int threads = 1;               ///< at most the processor's

  // Paths of the punctuation model; empty for none.
  QString punctuationModel;
  QString punctuationVocabulary;

  bool hasRecognizer() const { return !tokens.isEmpty(); }
  bool hasPunctuation() const { return !punctuationModel.isEmpty(); }

  QByteArray toJson() const;
  /// Leaves out what is missing or wrong.
  static RecognizerSettings fromJson(const QByteArray& json);

  bool operator==(const RecognizerSettings&) const = default;
};

}  // namespace velun
