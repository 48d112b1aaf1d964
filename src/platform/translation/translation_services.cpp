// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/translation_services.h"

#include <exception>

namespace velun {

TranslationServices::TranslationServices(std::vector<std::unique_ptr<TranslatorBackend>> backends,
                                         Clock& clock)
    : pool_(std::move(backends), clock) {}

QCoro::Task<> TranslationServices::install(std::shared_ptr<TranslationServices> services,
                                           TranslationOffer offer, std::stop_token stop) {
  services->countInstalls(+1);
  std::exception_ptr error;
  try {
    QCoro::Task<> task = services->pool_.backendOf(offer).install(offer.pair, stop);
    co_await task;
  } catch (...) {
    error = std::current_exception();
  }
  services->countInstalls(-1);
  if (error) std::rethrow_exception(error);
}

void TranslationServices::countInstalls(int change) {
  const bool wasInstalling = isInstalling();
  installing_ += change;
  if (isInstalling() != wasInstalling) Q_EMIT installingChanged();
}

}  // namespace velun
