// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/local_translator.h"

#include "language/localization.h"
#include "platform/foundation/failure.h"

#include <algorithm>
#include <exception>
#include <functional>
#include <utility>

namespace velun {

namespace {

Failure unavailable(const QString& sourceID, const QString& targetID) {
  const QString source = languageName(sourceID);
  const QString target = languageName(targetID);
  return Failure(
      L(QStringLiteral("Translation from %1 to %2 is not available.").arg(source, target),
        QStringLiteral("%1에서 %2로 번역할 수 없습니다.").arg(source, target)));
}

// Models invent words for a text of punctuation and symbols alone.
bool hasWords(const QString& text) {
  const QList<uint> characters = text.toUcs4();
  return std::ranges::any_of(characters, [](uint c) { return QChar::isLetterOrNumber(c); });
}

}  // namespace

LocalTranslator::LocalTranslator(std::shared_ptr<TranslatorPool> pool, QString source,
                                 QString target)
    : pool_(std::move(pool)), source_(std::move(source)), target_(std::move(target)) {}

QCoro::Task<> LocalTranslator::prepare(std::stop_token stop) {
  QCoro::Task<QString> loading = work(std::nullopt, stop);
  co_await loading;
}

QCoro::Task<QString> LocalTranslator::translate(QString text, std::stop_token stop) {
  if (!hasWords(text)) co_return text;
  QCoro::Task<QString> working = work(text, stop);
  const QString translation = co_await working;
  co_return translation;
}

QCoro::Task<QString> LocalTranslator::work(std::optional<QString> text, std::stop_token stop) {
  std::exception_ptr error;
  QString translation;
  try {
    QCoro::Task<> findingRoute = findRoute(stop);
    co_await findingRoute;
    const OneShot<QString> result = startWork(text, stop);
    translation = co_await result;
  } catch (...) {
    error = std::current_exception();
  }
  if (error) {
    if (!stop.stop_requested()) dropRoute();
    std::rethrow_exception(error);
  }
  co_return translation;
}

QCoro::Task<> LocalTranslator::findRoute(std::stop_token stop) {
  if (!route_.empty()) co_return;
  const LanguagePair wanted{translationLanguage(source_, true),
                            translationLanguage(target_, false)};
  const std::vector<TranslationOffer> route = findTranslationRoute(pool_->offers(), wanted);
  if (route.empty()) throw unavailable(source_, target_);
  for (const TranslationOffer& step : route) {
    if (step.isInstalled) continue;
    QCoro::Task<> installing = TranslatorPool::install(pool_, step, stop);
    co_await installing;
  }
  route_ = route;
}

OneShot<QString> LocalTranslator::startWork(const std::optional<QString>& text,
                                            const std::stop_token& stop) {
  std::vector<std::shared_ptr<TextTranslator>> translators;
  for (const TranslationOffer& step : route_) translators.push_back(pool_->translator(step));
  OneShot<QString> result;
  // The caller does not wait until the thread notices the stop request.
  const auto cancel = std::make_shared<std::stop_callback<std::function<void()>>>(
      stop, [result] { result.fail(std::make_exception_ptr(Cancelled())); });
  pool_->thread().start([result, translators, text, stop, cancel] {
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

void LocalTranslator::dropRoute() {
  for (const TranslationOffer& step : route_) pool_->forget(step);
  route_.clear();
}

}  // namespace velun
