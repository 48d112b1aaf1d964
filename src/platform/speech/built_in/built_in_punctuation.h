// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/neural/helper_program.h"
#include "platform/speech/punctuation_restorer.h"

namespace velun {

/// The punctuation of US English without any download: a model of our own, which is installed with
/// the program and knows the speaker's pauses. It runs in a helper program.
class BuiltInPunctuation final : public PunctuationProvider {
 public:
  /// `program` is the helper program; `folder` contains the model, its vocabulary and
  /// their SHA-256 in "SHA256SUMS".
  BuiltInPunctuation(QString program, QString folder);

  /// The folder that is installed beside the programs in `programFolder`.
  static QString installedFolder(const QString& programFolder);

  /// A null function for other locales, or if nothing is installed. Damage shows when the model is
  /// loaded.
  PunctuationRestorer::Factory punctuationFactory(const QString& locale) const override;

 private:
  QString program_;
  HelperProgram helper_;
  QString folder_;
};

}  // namespace velun
