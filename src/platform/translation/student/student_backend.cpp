// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/student/student_backend.h"

#include "platform/translation/student/student_translator.h"

#include <algorithm>
#include <numeric>

namespace velun {

namespace {

// A model takes about as much memory as disk space. A tenth of the memory leaves enough for
// recognition and the desktop.
constexpr std::int64_t kMinMemoryPerModelSize = 10;

// The published score of automatic evaluation; 0 when there is none.
double publishedQuality(const Model& model) {
  return model.options.value("comet").toDouble(0);
}

LanguagePair languagePair(const Model& model) {
  return {translationLanguage(model.languages.value(0), true),
          translationLanguage(model.languages.value(1), false)};
}

}  // namespace

StudentFiles findStudentFiles(const Model& model, const QString& folder) {
  StudentFiles files;
  for (const ModelDownload& download : model.downloads) {
    for (const ModelFile& file : download.files) {
      const QString path = folder + u'/' + file.name;
      if (file.name.startsWith(QStringLiteral("model."))) files.model = path;
      if (file.name.startsWith(QStringLiteral("lex."))) files.shortlist = path;
      if (file.name.startsWith(QStringLiteral("vocab."))) files.sourceVocabulary = path;
      if (file.name.startsWith(QStringLiteral("srcvocab."))) files.sourceVocabulary = path;
      if (file.name.startsWith(QStringLiteral("trgvocab."))) files.targetVocabulary = path;
    }
  }
  return files;
}

StudentBackend::StudentBackend(const std::vector<Model>& models, ModelStore& store,
                               std::int64_t memoryBytes)
    : store_(store) {
  for (const Model& model : models) {
    const bool fits = model.installedBytes * kMinMemoryPerModelSize <= memoryBytes;
    if (model.languages.size() == 2 && fits) models_[languagePair(model)].push_back(model);
  }
  for (auto& [pair, ofPair] : models_) {
    // Without published scores the order of the catalogue is kept.
    const bool allMeasured =
        std::ranges::all_of(ofPair, [](const Model& model) { return publishedQuality(model) > 0; });
    if (allMeasured) std::ranges::stable_sort(ofPair, std::ranges::greater(), publishedQuality);
  }
}

std::vector<LanguagePair> StudentBackend::installedPairs() const {
  std::vector<LanguagePair> pairs;
  for (const auto& [pair, models] : models_) {
    if (bestInstalled(models)) pairs.push_back(pair);
  }
  return pairs;
}

std::vector<LanguagePair> StudentBackend::downloadablePairs() const {
  std::vector<LanguagePair> pairs;
  for (const auto& [pair, models] : models_) {
    if (!store_.isInstalled(*preferred(models))) pairs.push_back(pair);
  }
  return pairs;
}

qint64 StudentBackend::downloadBytes(const LanguagePair& pair) const {
  const auto& downloads = preferred(models_.at(pair))->downloads;
  return std::accumulate(
      downloads.begin(), downloads.end(), qint64(0),
      [](qint64 sum, const ModelDownload& download) { return sum + download.bytes; });
}

std::vector<PairModels> StudentBackend::models() const {
  std::vector<PairModels> all;
  for (const auto& [pair, models] : models_) {
    const Model* best = preferred(models);
    PairModels ordered{pair, {*best}};
    for (const Model& model : models) {
      if (&model != best) ordered.models.push_back(model);
    }
    all.push_back(std::move(ordered));
  }
  return all;
}

QString StudentBackend::usedModel(const LanguagePair& pair) const {
  return used(pair).id;
}

QCoro::Task<> StudentBackend::install(LanguagePair pair, std::stop_token stop) {
  const Model model = *preferred(models_.at(pair));
  QCoro::Task<> task = store_.install(model, stop);
  co_await task;
}

std::shared_ptr<TextTranslator> StudentBackend::makeTranslator(const LanguagePair& pair) {
  const Model& model = used(pair);
  const QString folder = store_.folder(model);
  const auto report = [speeds = speeds_, folder](double millisecondsPerToken) {
    speeds->add(folder, millisecondsPerToken);
  };
  return std::make_shared<StudentTranslator>(findStudentFiles(model, folder), pair, report,
                                             store_.use(model));
}

const Model& StudentBackend::used(const LanguagePair& pair) const {
  const std::vector<Model>& models = models_.at(pair);
  const Model* installed = bestInstalled(models);
  // If it was deleted since it was listed, the first text reports that its files cannot be opened.
  return installed ? *installed : *preferred(models);
}

const Model* StudentBackend::preferred(const std::vector<Model>& models) const {
  const auto fastEnough = std::ranges::find_if(
      models, [this](const Model& model) { return !speeds_->isTooSlow(store_.folder(model)); });
  if (fastEnough != models.end()) return &*fastEnough;
  return &*std::ranges::min_element(models, {}, &Model::installedBytes);
}

const Model* StudentBackend::bestInstalled(const std::vector<Model>& models) const {
  const Model* best = preferred(models);
  if (store_.isInstalled(*best)) return best;
  const auto installed = std::ranges::find_if(
      models, [this](const Model& model) { return store_.isInstalled(model); });
  return installed == models.end() ? nullptr : &*installed;
}

}  // namespace velun
