// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/local_translation_session.h"

#include "language/localization.h"
#include "platform/foundation/failure.h"
#include "platform/foundation/main_task.h"

#include <algorithm>
#include <exception>
#include <QPointer>
#include <utility>

namespace velun {

namespace {

Failure noWayBetween(const TranslationConfiguration& configuration) {
  const QString source = languageName(configuration.source());
  const QString target = languageName(configuration.target());
  return Failure(
      L(QStringLiteral("Translation from %1 to %2 is not available.").arg(source, target),
        QStringLiteral("%1에서 %2로 번역할 수 없습니다.").arg(source, target)));
}

// Punctuation and symbols alone mean the same in every language, and models invent words for them.
bool hasWords(const QString& text) {
  const QList<uint> characters = text.toUcs4();
  return std::ranges::any_of(characters, [](uint c) { return QChar::isLetterOrNumber(c); });
}

}  // namespace

LocalTranslationSession::LocalTranslationSession(std::shared_ptr<TranslationServices> services,
                                                 const TranslationConfiguration& configuration)
    : services_(std::move(services)), configuration_(configuration) {
  enqueue(std::nullopt);
}

LocalTranslationSession::~LocalTranslationSession() {
  stop_.request_stop();
  for (const Request& request : requests_) {
    request.answer.fail(std::make_exception_ptr(Cancelled()));
  }
}

QCoro::Task<QString> LocalTranslationSession::translate(QString text) {
  const OneShot<QString> answer = enqueue(text);
  const QString translation = co_await answer;
  co_return translation;
}

OneShot<QString> LocalTranslationSession::enqueue(std::optional<QString> text) {
  OneShot<QString> answer = requests_.emplace_back(std::move(text)).answer;
  if (!std::exchange(isAnswering_, true)) {
    startTask(this, [this] { return answerRequests(); });
  }
  return answer;
}

QCoro::Task<> LocalTranslationSession::answerRequests() {
  const QPointer<LocalTranslationSession> self(this);
  while (!requests_.empty()) {
    const std::optional<QString> text = requests_.front().text;
    QString translation = text.value_or(QString());
    std::exception_ptr error;
    if (!text || hasWords(*text)) {
      try {
        QCoro::Task<> ready = findRoute();
        co_await ready;
        if (!self) co_return;
        const OneShot<QString> work = startWork(text);
        translation = co_await work;
      } catch (...) {
        error = std::current_exception();
      }
      if (!self) co_return;
    }
    const OneShot<QString> answer = requests_.front().answer;
    requests_.pop_front();
    if (error) {
      dropRoute();
      answer.fail(error);
    } else {
      answer.complete(translation);
    }
  }
  isAnswering_ = false;
}

QCoro::Task<> LocalTranslationSession::findRoute() {
  if (!route_.empty()) co_return;
  const QPointer<LocalTranslationSession> self(this);
  const std::shared_ptr<TranslationServices> services = services_;
  const std::stop_token stop = stop_.get_token();
  const LanguagePair wanted{translationLanguage(configuration_.source(), true),
                            translationLanguage(configuration_.target(), false)};
  const std::vector<TranslationStep> route =
      findTranslationRoute(services->pool().offers(), wanted);
  if (route.empty()) throw noWayBetween(configuration_);
  for (const TranslationStep& step : route) {
    if (step.better) services->pool().backendOf(*step.better).installQuietly(step.better->pair);
    if (step.offer.isInstalled) continue;
    QCoro::Task<> installed = TranslationServices::install(services, step.offer, stop);
    co_await installed;
    if (!self) throw Cancelled();
  }
  route_ = route;
}

OneShot<QString> LocalTranslationSession::startWork(const std::optional<QString>& text) {
  std::vector<std::shared_ptr<TextTranslator>> translators;
  for (const TranslationStep& step : route_) {
    translators.push_back(services_->pool().translator(step.offer));
  }
  OneShot<QString> result;
  services_->worker().post([result, translators, text, stop = stop_.get_token()] {
    try {
      QString translation = text.value_or(QString());
      for (const auto& translator : translators) {
        if (stop.stop_requested()) throw Cancelled();
        if (text) {
          translation = translator->translate(translation, stop);
        } else {
          translator->load();
        }
      }
      result.complete(translation);
    } catch (...) {
      result.fail(std::current_exception());
    }
  });
  return result;
}

void LocalTranslationSession::dropRoute() {
  for (const TranslationStep& step : route_) services_->pool().forget(step.offer);
  route_.clear();
}

}  // namespace velun
