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

/// The paths of the files of a model, found by their published names.
StudentFiles findStudentFiles(const Model& model, const QString& folder);

/// The small translation models that are downloaded once and run on this computer. Uses the model
/// of a pair with the best published quality that fits into memory and was not measured as too slow
/// on this computer.
class StudentBackend final : public TranslatorBackend {
 public:
  /// `models` are the translation models of the catalogue. `store` must outlive the back end.
  /// `memoryBytes` is the physical memory of the computer.
  StudentBackend(const std::vector<Model>& models, ModelStore& store, std::int64_t memoryBytes);

  std::vector<LanguagePair> installedPairs() const override;

  /// Pairs whose preferred model is not installed, even if another one is.
  std::vector<LanguagePair> downloadablePairs() const override;

  qint64 downloadBytes(const LanguagePair& pair) const override;
  std::vector<PairModels> models() const override;
  QString usedModel(const LanguagePair& pair) const override;
  QCoro::Task<> install(LanguagePair pair, std::stop_token stop) override;
  std::shared_ptr<TextTranslator> makeTranslator(const LanguagePair& pair) override;

 private:
  const Model* preferred(const std::vector<Model>& models) const;
  const Model* bestInstalled(const std::vector<Model>& models) const;
  const Model& used(const LanguagePair& pair) const;

  std::map<LanguagePair, std::vector<Model>> models_;  // the best one of each pair first
  ModelStore& store_;
  std::shared_ptr<ModelSpeeds> speeds_ = std::make_shared<ModelSpeeds>();
};

}  // namespace velun
