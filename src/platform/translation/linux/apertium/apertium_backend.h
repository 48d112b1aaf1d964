// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/translator_backend.h"

namespace velun {

/// The Apertium pairs that are installed on this computer. Notices pairs that are installed or
/// removed while the program runs.
class ApertiumBackend final : public TranslatorBackend {
 public:
  /// The folder of the system's mode files.
  static QString systemFolder();

  explicit ApertiumBackend(QString modesFolder = systemFolder());

  std::vector<LanguagePair> installedPairs() const override;
  std::vector<LanguagePair> downloadablePairs() const override { return {}; }
  QCoro::Task<> install(LanguagePair pair, std::stop_token stop) override;
  std::shared_ptr<TextTranslator> makeTranslator(const LanguagePair& pair) override;

 private:
  QString modesFolder_;
};

}  // namespace velun
