// SPDX-License-Identifier: GPL-3.0-or-later
#include "translation/caption_translator.h"

#include "language/localization.h"
#include "platform/foundation/failure.h"
#include "platform/foundation/language_identifier.h"
#include "platform/foundation/main_task.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace velun {

CaptionTranslator::CaptionTranslator(TranslationPlatform& platform, const std::vector<Line>& lines)
    : platform_(platform), lines_(lines) {}

CaptionTranslator::~CaptionTranslator() {
  stop_.request_stop();
}

bool CaptionTranslator::hasSameLanguage(const QString& sourceID, const QString& targetID) {
  const QString source = languageCode(sourceID);
  return !source.isEmpty() && source == languageCode(targetID);
}

void CaptionTranslator::configure(bool enabled, bool hasContent, const QString& sourceID,
                                  const QString& targetID) {
  stop_.request_stop();
  stop_ = std::stop_source();
  translator_.reset();
  isTranslating_ = false;
  next_ = 0;
  inserted_.clear();
  sourceID_ = sourceID;
  targetID_ = targetID;
  if (!enabled || !hasContent || hasSameLanguage(sourceID, targetID)) return;
  translator_ = platform_.makeTranslator(languageOfLocale(sourceID), targetID);
  start(false);
}

void CaptionTranslator::lineInserted(std::size_t index) {
  if (index < next_) {
    ++next_;
    inserted_.push_back(lines_[index].id);
  }
  linesAppended();
}

void CaptionTranslator::linesAppended() {
  if (translator_ && !isTranslating_) start(true);
}

void CaptionTranslator::start(bool isPrepared) {
  isTranslating_ = true;
  startTask(this, [this, isPrepared, stop = stop_.get_token()] {
    return translateLines(this, isPrepared, stop);
  });
}

// `self` is valid while no stop was requested: `configure` and the destructor request one.
QCoro::Task<> CaptionTranslator::translateLines(CaptionTranslator* self, bool isPrepared,
                                                std::stop_token stop) {
  if (stop.stop_requested()) co_return;
  const std::shared_ptr<Translator> translator = self->translator_;
  if (!isPrepared) {
    try {
      QCoro::Task<> preparing = translator->prepare(stop);
      co_await preparing;
    } catch (const std::exception&) {
      // The first line tries again and reports it.
    }
  }
  while (!stop.stop_requested()) {
    const Line* const line = self->takeNext();
    if (!line) {
      self->isTranslating_ = false;
      break;
    }
    const QUuid id = line->id;
    const QString text = line->text;
    const QString target = self->targetID_;
    QString translation;
    std::optional<QString> error;
    try {
      QCoro::Task<QString> translating = translator->translate(text, stop);
      translation = co_await translating;
    } catch (const std::exception& exception) {
      error = descriptionOf(exception);
    }
    // The language or the session has changed meanwhile: the result is discarded.
    if (stop.stop_requested()) break;
    if (error) {
      Q_EMIT self->failed(L("Translation error: " + *error, "번역 오류: " + *error));
    } else {
      Q_EMIT self->translated(id, target, translation);
    }
  }
}

const Line* CaptionTranslator::takeNext() {
  while (!inserted_.empty()) {
    const QUuid id = inserted_.front();
    inserted_.erase(inserted_.begin());
    const auto found = std::find_if(lines_.rbegin(), lines_.rend(),
                                    [&id](const Line& line) { return line.id == id; });
    if (found != lines_.rend() && isWanted(*found)) return &*found;
  }
  while (next_ < lines_.size()) {
    const Line& line = lines_[next_++];
    if (isWanted(line)) return &line;
  }
  return nullptr;
}

bool CaptionTranslator::isWanted(const Line& line) const {
  return line.sourceLanguage == sourceID_ && !line.translations.contains(targetID_);
}

}  // namespace velun
