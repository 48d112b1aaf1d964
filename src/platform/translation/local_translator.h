// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/one_shot.h"
#include "platform/translation/translator.h"
#include "platform/translation/translator_pool.h"

#include <memory>
#include <optional>
#include <vector>

namespace velun {

/// Translates with the back ends of this computer, directly or through English.
class LocalTranslator final : public Translator {
 public:
  /// `source` and `target` are language identifiers of any form ("en", "en_US").
  LocalTranslator(std::shared_ptr<TranslatorPool> pool, QString source, QString target);

  QCoro::Task<> prepare(std::stop_token stop) override;
  QCoro::Task<QString> translate(QString text, std::stop_token stop) override;

 private:
  /// Finds the route and installs what it needs, unless that was done.
  QCoro::Task<> findRoute(std::stop_token stop);

  /// Translates on the pool's thread. Without a text it only loads the models.
  QCoro::Task<QString> work(std::optional<QString> text, std::stop_token stop);
  OneShot<QString> startWork(const std::optional<QString>& text, const std::stop_token& stop);

  /// Makes the next text find a route and load its models again.
  void dropRoute();

  std::shared_ptr<TranslatorPool> pool_;
  QString source_;
  QString target_;
  std::vector<TranslationOffer> route_;  // empty until everything on it is installed
};

}  // namespace velun
