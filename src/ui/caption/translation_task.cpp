// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/translation_task.h"

#include "captions/caption_view_model.h"
#include "platform/foundation/main_task.h"
#include "platform/translation/translation_platform.h"

namespace velun {

namespace {

QCoro::Task<> translateWith(CaptionViewModel* model, std::weak_ptr<TranslationSession> opened) {
  std::shared_ptr<TranslationSession> session = opened.lock();
  // Closed again before its turn came: the model gets the one that was opened after it.
  if (!session) co_return;
  QCoro::Task<> run = model->runTranslations(std::move(session));
  co_await run;
}

}  // namespace

TranslationTask::TranslationTask(CaptionViewModel& model, TranslationPlatform& platform,
                                 QObject* parent)
    : QObject(parent), model_(model), platform_(platform) {
  connect(&model.translator(), &CaptionTranslator::configurationChanged, this,
          &TranslationTask::reopen);
  reopen();
}

TranslationTask::~TranslationTask() = default;

void TranslationTask::reopen() {
  session_.reset();
  const std::optional<TranslationConfiguration>& configuration =
      model_.translator().configuration();
  if (!configuration) return;
  session_ = platform_.openSession(*configuration);
  const std::weak_ptr<TranslationSession> opened = session_;
  CaptionViewModel* model = &model_;
  startTask(this, [model, opened] { return translateWith(model, opened); });
}

}  // namespace velun
