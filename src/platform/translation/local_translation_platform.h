// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/translation_platform.h"
#include "platform/translation/translation_services.h"

#include <functional>
#include <memory>
#include <vector>

namespace velun {

/// Translation on this computer, over the back ends that it is given.
class LocalTranslationPlatform final : public TranslationPlatform {
  Q_OBJECT

 public:
  /// The languages that can be recognized, as identifiers of any form.
  using SpokenLanguages = std::function<QCoro::Task<QStringList>()>;

  /// `backends` are in order of preference. `clock` must outlive the platform and its sessions.
  LocalTranslationPlatform(std::vector<std::unique_ptr<TranslatorBackend>> backends,
                           SpokenLanguages spokenLanguages, Clock& clock);

  std::unique_ptr<TranslationSession> openSession(
      const TranslationConfiguration& configuration) override;
  QCoro::Task<QStringList> supportedLanguages() override;
  std::optional<QString> activity() const override;

 private:
  std::shared_ptr<TranslationServices> services_;
  SpokenLanguages spokenLanguages_;
};

}  // namespace velun
