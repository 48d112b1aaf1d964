// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/linux/apertium/apertium_backend.h"

#include "platform/translation/linux/apertium/apertium_mode.h"
#include "platform/translation/linux/apertium/apertium_translator.h"

#include <algorithm>

namespace velun {

QString ApertiumBackend::systemFolder() {
  return QStringLiteral("/usr/share/apertium/modes");
}

ApertiumBackend::ApertiumBackend(QString modesFolder) : modesFolder_(std::move(modesFolder)) {}

std::vector<LanguagePair> ApertiumBackend::installedPairs() const {
  std::vector<LanguagePair> pairs;
  for (const ApertiumMode& mode : installedApertiumModes(modesFolder_)) pairs.push_back(mode.pair);
  return pairs;
}

QCoro::Task<> ApertiumBackend::install(LanguagePair, std::stop_token) {
  co_return;
}

std::shared_ptr<TextTranslator> ApertiumBackend::makeTranslator(const LanguagePair& pair) {
  std::vector<ApertiumMode> modes = installedApertiumModes(modesFolder_);
  const auto found = std::ranges::find(modes, pair, &ApertiumMode::pair);
  // If it was removed since it was listed, the first text reports that it cannot be started.
  ApertiumMode mode = found != modes.end() ? std::move(*found) : ApertiumMode{pair, {}};
  return std::make_shared<ApertiumTranslator>(std::move(mode));
}

}  // namespace velun
