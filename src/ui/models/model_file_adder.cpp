// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/models/model_file_adder.h"

#include "language/localization.h"
#include "platform/foundation/clock.h"
#include "platform/foundation/failure.h"
#include "ui/models/model_texts.h"

namespace velun {

namespace {

using namespace std::chrono_literals;

constexpr auto kReportInterval = 100ms;

}  // namespace

ModelFileAdder::ModelFileAdder(const ModelServices& services) : services_(services) {
  connect(&services_.store, &ModelStore::stateChanged, this, &ModelFiles::changed);
}

ModelFileAdder::~ModelFileAdder() = default;

std::int64_t ModelFileAdder::diskBytes() const {
  std::int64_t bytes = 0;
  for (const Model& model : services_.catalogue->models()) {
    bytes += services_.store.diskBytes(model);
  }
  return bytes;
}

void ModelFileAdder::addFromFile() {
  const std::optional<QUrl> file = services_.panels.open(
      {.title = L("Add a Model from a File", "파일에서 모델 추가"),
       .message =
           L("Choose a file of a model that you have downloaded in another way. Files of the "
             "same model beside it are added too.",
             "다른 방법으로 내려받은 모델의 파일을 선택하세요. 같은 폴더에 있는 그 모델의 다른 "
             "파일도 "
             "함께 추가합니다."),
       .filterName = L("All files", "모든 파일"),
       .patterns = {QStringLiteral("*")}});
  if (file) read(file->toLocalFile());
}

void ModelFileAdder::read(const QString& path) {
  share_ = std::make_shared<std::atomic<double>>(0);
  last_.reset();
  job_.start(
      [place = services_.store.filePlacer(), path, share = share_](const std::stop_token& stop) {
        Result result;
        try {
          result.placed = place(
              path, [share](double done) { *share = done; }, stop);
        } catch (const std::exception& error) {
          result.failure = ModelFailure::textOf(error);
        }
        return result;
      },
      [this](const Result& result) { finish(result); });
  reportLater();
  Q_EMIT changed();
}

void ModelFileAdder::reportLater() {
  reporting_ = services_.clock.callAfter(kReportInterval, [this] {
    if (!job_.isRunning()) return;
    reportLater();
    Q_EMIT changed();
  });
}

void ModelFileAdder::finish(const Result& result) {
  reporting_.reset();
  last_ = result;
  Q_EMIT changed();
  // The store itself does not know about the new files.
  const QString& model = result.placed.model;
  if (services_.catalogue->find(model)) Q_EMIT services_.store.stateChanged(model);
}

QString ModelFileAdder::outcome() const {
  if (!last_) return {};
  const Model* model = services_.catalogue->find(last_->placed.model);
  if (!model) return last_->failure ? last_->failure() : QString();
  const QString name = nameText(*model);
  if (last_->placed.missing.isEmpty()) {
    return L("“%1” is installed.", "“%1”을(를) 설치했습니다.").arg(name);
  }
  return L("This file is a part of “%1”. Add its other files too: %2",
           "“%1”의 일부입니다. 다른 파일도 추가하세요: %2")
      .arg(name, last_->placed.missing.join(", "));
}

void ModelFileAdder::cancelAdding() {
  job_.cancel();
  reporting_.reset();
  Q_EMIT changed();
}

std::optional<double> ModelFileAdder::progress() const {
  return job_.isRunning() ? std::optional(share_->load()) : std::nullopt;
}

}  // namespace velun
