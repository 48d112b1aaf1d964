// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/model_facts.h"

#include <cmath>
#include <QJsonArray>

namespace velun {

namespace {

/// Far above any model.
constexpr int kMaxStepMs = 60'000;
constexpr std::int64_t kMaxMemoryBytes = 1'000'000'000'000;

std::optional<ModelQuality> qualityNamed(const QString& name) {
  if (name == "good") return ModelQuality::good;
  if (name == "fair") return ModelQuality::fair;
  if (name == "higherErrors") return ModelQuality::higherErrors;
  return std::nullopt;
}

std::optional<ModelErrors::Source> sourceNamed(const QString& name) {
  if (name == "velun") return ModelErrors::Source::velun;
  if (name == "maker") return ModelErrors::Source::maker;
  if (name == "others") return ModelErrors::Source::others;
  return std::nullopt;
}

BilingualText readText(const QJsonValue& value, const CatalogueChecker& checker) {
  const BilingualText text{value["en"].toString(), value["ko"].toString()};
  checker.require(text.english.isEmpty() == text.korean.isEmpty(),
                  "a text is in one language only");
  return text;
}

ModelQuality readQuality(const QJsonValue& value, const CatalogueChecker& checker) {
  const auto quality = qualityNamed(value.toString());
  checker.require(quality.has_value(), "unknown quality");
  return *quality;
}

ModelErrors readErrors(const QJsonValue& value, const CatalogueChecker& checker) {
  ModelErrors errors;
  errors.percent = value["percent"].toDouble(-1);
  checker.require(errors.percent >= 0 && std::isfinite(errors.percent), "impossible errors");
  errors.speech = readText(value["speech"], checker);
  checker.require(!errors.speech.isEmpty(), "errors without the speech that was recognized");
  const auto source = sourceNamed(value["source"].toString());
  checker.require(source.has_value(), "errors without a source");
  errors.source = *source;
  const QString unit = value["unit"].toString("words");
  checker.require(unit == "words" || unit == "characters", "errors of an unknown unit");
  errors.areOfCharacters = unit == "characters";
  return errors;
}

ModelLanguageFacts readLanguageFacts(const QJsonValue& value, const CatalogueChecker& checker) {
  ModelLanguageFacts facts;
  if (value["quality"].isString()) facts.quality = readQuality(value["quality"], checker);
  if (value["errors"].isObject()) facts.errors = readErrors(value["errors"], checker);
  return facts;
}

void readRecognitionFacts(const QJsonObject& entry, const CatalogueChecker& checker, Model& model) {
  const QJsonArray writes = entry["writes"].toArray();
  model.writesCase = writes.contains("case");
  model.writesPunctuation = writes.contains("punctuation");
  model.stepMs = entry["stepMs"].toInt();
  checker.require(model.stepMs >= 0 && model.stepMs <= kMaxStepMs, "an impossible step");
  model.memoryBytes = entry["memoryBytes"].toInteger();
  checker.require(model.memoryBytes >= 0 && model.memoryBytes <= kMaxMemoryBytes,
                  "an impossible memory size");
  model.quality = readQuality(entry["quality"], checker);
  if (entry.contains("errors")) model.errors = readErrors(entry["errors"], checker);
  const QJsonObject languages = entry["languageFacts"].toObject();
  for (const QString& language : languages.keys()) {
    checker.require(model.languages.contains(language), "facts about another language");
    model.languageFacts.insert(language, readLanguageFacts(languages[language], checker));
  }
}

}  // namespace

void readModelFacts(const QJsonObject& entry, const CatalogueChecker& checker, Model& model) {
  model.title = entry["title"].toString();
  checker.require(model.kind != ModelKind::recognition || !model.title.isEmpty(), "no title");
  if (model.title.isEmpty()) model.title = model.id;
  model.licenceNotice = readText(entry["licenceNotice"], checker);
  if (model.kind == ModelKind::recognition) readRecognitionFacts(entry, checker, model);
}

}  // namespace velun
