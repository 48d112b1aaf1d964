// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/translator_backend.h"

namespace velun {

/// The Apertium pairs that are installed on this computer. Pairs that the user installs or removes
/// while the program runs are noticed.
class ApertiumBackend final : public TranslatorBackend {
 public:
  /// Where the system keeps the mode files.
  static QString systemFolder();

  explicit ApertiumBackend(QString modesFolder = systemFolder());

  std::vector<LanguagePair> installedPairs() const override;
  std::vector<LanguagePair> downloadablePairs() const override { return {}; }
  QCoro::Task<> install(LanguagePair pair, std::stop_token stop) override;
  void installQuietly(const LanguagePair&) override {}
  std::shared_ptr<TextTranslator> makeTranslator(const LanguagePair& pair) override;

 private:
  QString modesFolder_;
};

}  // namespace velun
