// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/translation_worker.h"
#include "platform/translation/translator_pool.h"

#include <memory>
#include <QCoroTask>
#include <QObject>
#include <stop_token>
#include <vector>

namespace velun {

/// What all translation sessions share: the translators, the thread that they run on, and the
/// downloads under way. Main thread.
class TranslationServices final : public QObject {
  Q_OBJECT

 public:
  TranslationServices(std::vector<std::unique_ptr<TranslatorBackend>> backends, Clock& clock);

  TranslatorPool& pool() { return pool_; }
  TranslationWorker& worker() { return worker_; }

  /// Whether any session waits for a download.
  bool isInstalling() const { return installing_ > 0; }

  /// Returns when `offer` can be used. Throws `Failure`, or `Cancelled` soon after a stop was
  /// requested.
  static QCoro::Task<> install(std::shared_ptr<TranslationServices> services,
                               TranslationOffer offer, std::stop_token stop);

 Q_SIGNALS:
  void installingChanged();

 private:
  void countInstalls(int change);

  TranslatorPool pool_;
  int installing_ = 0;
  TranslationWorker worker_;  // last: it ends before what it works with
};

}  // namespace velun
