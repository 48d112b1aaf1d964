// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/local_translation_platform.h"

#include "language/localization.h"
#include "platform/translation/language_availability.h"
#include "platform/translation/local_translation_session.h"

namespace velun {

LocalTranslationPlatform::LocalTranslationPlatform(
    std::vector<std::unique_ptr<TranslatorBackend>> backends, SpokenLanguages spokenLanguages,
    Clock& clock)
    : services_(std::make_shared<TranslationServices>(std::move(backends), clock)),
      spokenLanguages_(std::move(spokenLanguages)) {
  connect(services_.get(), &TranslationServices::installingChanged, this,
          &TranslationPlatform::activityChanged);
}

std::unique_ptr<TranslationSession> LocalTranslationPlatform::openSession(
    const TranslationConfiguration& configuration) {
  return std::make_unique<LocalTranslationSession>(services_, configuration);
}

QCoro::Task<QStringList> LocalTranslationPlatform::supportedLanguages() {
  const std::shared_ptr<TranslationServices> services = services_;
  QCoro::Task<QStringList> task = spokenLanguages_();
  const QStringList spoken = co_await task;
  const LanguageAvailability availability(services->pool().offers());
  co_return availability.supportedLanguages(spoken);
}

std::optional<QString> LocalTranslationPlatform::activity() const {
  if (!services_->isInstalling()) return std::nullopt;
  return L("Downloading translation model…", "번역 모델 다운로드 중…");
}

}  // namespace velun
