// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/library_settings.h"

#include "platform/foundation/preference_store.h"

#include <utility>

namespace velun {

namespace {

const auto kTitles = QStringLiteral("titlesFromFirstSentence");

}  // namespace

LibrarySettings::LibrarySettings(PreferenceStore* preferences) : preferences_(preferences) {
  if (preferences_) titlesFromFirstSentence_ = preferences_->get<bool>(kTitles).value_or(false);
}

void LibrarySettings::setTitlesFromFirstSentence(bool isOn) {
  const bool differs = std::exchange(titlesFromFirstSentence_, isOn) != isOn;
  if (preferences_) preferences_->set(kTitles, isOn);
  if (differs) Q_EMIT titlesFromFirstSentenceChanged();
}

}  // namespace velun
