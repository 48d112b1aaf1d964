// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/recognizer_preferences.h"

#include "platform/foundation/preference_store.h"

#include <algorithm>
#include <cmath>

namespace velun {

namespace {

QString choiceKey(const QString& locale) {
  return "recognizer." + locale;
}

QString speedKey(const QString& id) {
  return "recognizerSpeed." + id;
}

QString lastSpeedKey(const QString& id) {
  return "recognizerLastSpeed." + id;
}

}  // namespace

RecognizerPreferences::RecognizerPreferences(PreferenceStore* preferences)
    : preferences_(preferences) {}

QString RecognizerPreferences::choice(const QString& locale) const {
  const auto found = choices_.constFind(locale);
  if (found != choices_.constEnd()) return *found;
  if (!preferences_) return {};
  return preferences_->get<QString>(choiceKey(locale)).value_or(QString());
}

void RecognizerPreferences::setChoice(const QString& locale, const QString& id) {
  choices_[locale] = id;
  if (preferences_) preferences_->set(choiceKey(locale), id);
  Q_EMIT choiceChanged(locale);
}

std::optional<double> RecognizerPreferences::realTimeFactor(const QString& id) const {
  return factor(speedKey(id));
}

void RecognizerPreferences::addRealTimeFactor(const QString& id, double factor) {
  const double before =
      this->factor(lastSpeedKey(id)).value_or(realTimeFactor(id).value_or(factor));
  setFactor(speedKey(id), std::min(before, factor));
  setFactor(lastSpeedKey(id), factor);
}

std::optional<double> RecognizerPreferences::factor(const QString& key) const {
  const auto found = factors_.constFind(key);
  if (found != factors_.constEnd()) return *found;
  if (!preferences_) return std::nullopt;
  const std::optional<double> stored = preferences_->get<double>(key);
  const bool isUsable = stored && std::isfinite(*stored) && *stored >= 0;
  return isUsable ? stored : std::nullopt;
}

void RecognizerPreferences::setFactor(const QString& key, double factor) {
  factors_[key] = factor;
  if (preferences_) preferences_->set(key, factor);
}

std::function<void(const QString&, double)> speedKeeper(
    const std::shared_ptr<RecognizerPreferences>& preferences) {
  return [preferences](const QString& id, double realTimeFactor) {
    const auto keep = [preferences, id, realTimeFactor] {
      preferences->addRealTimeFactor(id, realTimeFactor);
    };
    QMetaObject::invokeMethod(preferences.get(), keep, Qt::QueuedConnection);
  };
}

}  // namespace velun
