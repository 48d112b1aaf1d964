// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/models/model_store.h"
#include "platform/translation/student/model_speeds.h"
#include "platform/translation/student/student_engine.h"
#include "platform/translation/translator_backend.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace velun {

/// Where the files of a model lie, found by their published names.
StudentFiles studentFilesOf(const Model& model, const QString& folder);

/// The small translation models that are downloaded once and run on this computer. Of the models
/// of one pair the best by published quality is taken that fits into memory and that was not found
/// too slow here.
class StudentBackend final : public TranslatorBackend {
 public:
  /// `models`: the translation models of the catalogue. `store` must outlive it.
  /// `memoryBytes` is how much memory the computer has.
  StudentBackend(const std::vector<Model>& models, ModelStore& store, std::int64_t memoryBytes);

  std::vector<LanguagePair> installedPairs() const override;

  /// Pairs of which the model to prefer is missing, another one being there or not.
  std::vector<LanguagePair> downloadablePairs() const override;

  QCoro::Task<> install(LanguagePair pair, std::stop_token stop) override;
  void installQuietly(const LanguagePair& pair) override;
  std::shared_ptr<TextTranslator> makeTranslator(const LanguagePair& pair) override;

 private:
  const Model* preferred(const std::vector<Model>& models) const;
  const Model* bestInstalled(const std::vector<Model>& models) const;

  std::map<LanguagePair, std::vector<Model>> models_;  // of each pair the best one first
  ModelStore& store_;
  std::shared_ptr<ModelSpeeds> speeds_ = std::make_shared<ModelSpeeds>();
};

}  // namespace velun
