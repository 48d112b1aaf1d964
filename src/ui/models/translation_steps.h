// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/models/model_store.h"
#include "platform/translation/pair_models.h"
#include "platform/translation/translation_platform.h"

#include <optional>

namespace velun {

/// What the user sees as one translation, into or from a language: the models for the language
/// itself and, if texts have to be translated into English first, the models for that.
struct TranslationSteps {
  PairModels own;
  std::optional<PairModels> toEnglish = std::nullopt;

  std::vector<const PairModels*> all() const;
};

/// Finds the translations that there are models for. Main thread.
class TranslationFinder {
 public:
  /// `spoken` is the language that is translated from now. The languages are those of
  /// `translationLanguage`.
  TranslationFinder(const TranslationPlatform& platform, const QString& spoken);

  /// Every language that has a model of its own, and English if another language is spoken.
  QStringList languages() const;

  /// How texts are translated into `language`; nullopt if there is no model for it.
  std::optional<TranslationSteps> into(const QString& language) const;
  /// How texts in `language` are translated into English, and from there into others; nullopt if
  /// there is no model for it.
  std::optional<TranslationSteps> from(const QString& language) const;

 private:
  std::optional<PairModels> find(const QString& source, const QString& target) const;

  std::vector<PairModels> pairs_;
  QString spoken_;
  bool needsStepToEnglish_ = false;  ///< and it is not installed
};

/// The model of a step that is being downloaded, else the one that is installed, else the best.
const Model& shownModel(const ModelStore& store, const PairModels& step);

/// The state of all steps together.
ModelState stateOf(const ModelStore& store, const TranslationSteps& steps);

/// The models of the steps that are still to be downloaded.
std::vector<Model> missingModels(const ModelStore& store, const TranslationSteps& steps);

/// The models of a step of which something is installed, also an earlier revision.
std::vector<Model> installedModels(const ModelStore& store, const PairModels& step);

/// The best model of a step if a lesser one is installed; null otherwise.
const Model* betterModel(const ModelStore& store, const PairModels& step);

}  // namespace velun
