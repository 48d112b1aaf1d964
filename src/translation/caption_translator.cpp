// SPDX-License-Identifier: GPL-3.0-or-later
#include "translation/caption_translator.h"

#include "language/localization.h"
#include "platform/foundation/failure.h"
#include "platform/foundation/language_identifier.h"
#include "translation/line_queue.h"

#include <exception>
#include <QMetaObject>
#include <utility>

namespace velun {

CaptionTranslator::CaptionTranslator(QObject* parent) : QObject(parent) {}

CaptionTranslator::~CaptionTranslator() {
  if (queue_) queue_->finish();
}

bool CaptionTranslator::hasSameLanguage(const QString& sourceID, const QString& targetID) {
  const QString source = languageCode(sourceID);
  return !source.isEmpty() && source == languageCode(targetID);
}

void CaptionTranslator::configure(bool enabled, bool hasContent, const QString& sourceID,
                                  const QString& targetID) {
  endRun();
  sourceID_ = sourceID;
  targetID_ = targetID;
  if (!enabled || !hasContent || hasSameLanguage(sourceID, targetID)) {
    publish(std::nullopt);
    return;
  }
  TranslationConfiguration configuration(languageOfLocale(sourceID), targetID);
  if (lastConfiguration_ && lastConfiguration_->source() == configuration.source() &&
      lastConfiguration_->target() == configuration.target()) {
    configuration.invalidate();
  }
  lastConfiguration_ = configuration;
  publish(configuration);
}

void CaptionTranslator::publish(const std::optional<TranslationConfiguration>& configuration) {
  if (configuration_ == configuration) return;
  configuration_ = configuration;
  Q_EMIT configurationChanged();
}

void CaptionTranslator::endRun() {
  if (queue_) queue_->finish();
  queue_.reset();
  if (!session_) return;
  // Not destroyed here: this may be called, through an answer, from inside the session itself.
  QMetaObject::invokeMethod(
      this, [session = std::move(session_)] {}, Qt::QueuedConnection);
  session_.reset();
}

void CaptionTranslator::enqueue(const QUuid& id) {
  if (queue_) queue_->push(id);
}

QCoro::Task<> CaptionTranslator::run(std::shared_ptr<TranslationSession> session) {
  endRun();
  queue_ = std::make_shared<LineQueue>();
  session_ = std::move(session);
  if (lines) {
    for (const Line& line : lines()) {
      if (needsTranslation(line)) queue_->push(line.id);
    }
  }
  return translateQueued(life_.weak(), queue_);
}

QCoro::Task<> CaptionTranslator::translateQueued(std::weak_ptr<CaptionTranslator> self,
                                                 std::shared_ptr<LineQueue> queue) {
  while (!queue->isFinished()) {
    if (queue->isEmpty()) {
      const OneShot<bool> arrival = queue->nextArrival();
      co_await arrival;
      continue;
    }
    const QUuid id = queue->take();
    CaptionTranslator* translator = self.lock().get();
    if (!translator || !translator->isCurrent(*queue)) break;
    const std::optional<QString> text = translator->textToTranslate(id);
    if (!text) continue;

    const QString language = translator->targetID_;
    QString translation;
    std::optional<QString> error;
    bool isCancelled = false;
    try {
      QCoro::Task<QString> task = translator->session_->translate(*text);
      translation = co_await task;
    } catch (const Cancelled&) {
      isCancelled = true;
    } catch (const std::exception& exception) {
      error = descriptionOf(exception);
    }

    translator = self.lock().get();
    if (!translator || !translator->isCurrent(*queue)) break;
    if (error) {
      const QString message = L("Translation error: " + *error, "번역 오류: " + *error);
      if (translator->onError) translator->onError(message);
    } else if (!isCancelled) {
      if (translator->onTranslation) translator->onTranslation(id, language, translation);
      translator = self.lock().get();
      if (translator && translator->onError) translator->onError(std::nullopt);
    }
  }
  CaptionTranslator* const translator = self.lock().get();
  if (translator && translator->queue_ == queue) translator->endRun();
}

bool CaptionTranslator::isCurrent(const LineQueue& queue) const {
  return &queue == queue_.get() && configuration_;
}

bool CaptionTranslator::needsTranslation(const Line& line) const {
  return line.sourceLanguage == sourceID_ && !line.translations.contains(targetID_);
}

std::optional<QString> CaptionTranslator::textToTranslate(const QUuid& id) const {
  const Line* const line = lineWithID ? lineWithID(id) : nullptr;
  return line && needsTranslation(*line) ? std::optional(line->text) : std::nullopt;
}

}  // namespace velun
