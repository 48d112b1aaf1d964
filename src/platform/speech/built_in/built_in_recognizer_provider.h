// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/caption_style.h"
#include "platform/speech/neural/helper_program.h"
#include "platform/speech/punctuation_restorer.h"
#include "platform/speech/recognizer_provider.h"

#include <memory>

namespace velun {

/// Where the parts of the built-in recognizer are.
struct BuiltInFiles {
  QString program;  ///< the helper program
  QString library;  ///< libvosk; empty where there is none, as on processors other than x86-64
  QString model;    ///< a folder with the model and the SHA-256 of its files in "SHA256SUMS"

  /// The parts that are installed beside the programs in `programFolder`.
  static BuiltInFiles installed(const QString& programFolder);

  /// The path of the model's language model, which has the words that it knows.
  QString languageModel() const { return model + QStringLiteral("/graph/Gr.fst"); }
};

/// US English, which needs no download.
class BuiltInRecognizerProvider final : public RecognizerProvider {
 public:
  /// Without `punctuation`, or where it has nothing installed for the locale, results have no
  /// punctuation.
  explicit BuiltInRecognizerProvider(
      BuiltInFiles files, std::shared_ptr<PunctuationProvider> punctuation = nullptr,
      std::shared_ptr<const CaptionStyle> style = std::make_shared<CaptionStyle>());

  QStringList supportedLocales() const override;
  /// One for its locale where there is a libvosk, installed when all parts are there. Whether they
  /// are undamaged shows when the recognizer is loaded.
  std::vector<RecognizerCandidate> candidates(const QString& locale) const override;
  Factory makeFactory(const QString& locale, const QString& id) const override;

 private:
  BuiltInFiles files_;
  HelperProgram helper_;
  std::shared_ptr<PunctuationProvider> punctuation_;
  std::shared_ptr<const CaptionStyle> style_;
};

}  // namespace velun
