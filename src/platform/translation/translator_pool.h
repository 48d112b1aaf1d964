// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"
#include "platform/translation/translation_routes.h"
#include "platform/translation/translator_backend.h"

#include <map>
#include <memory>
#include <QObject>
#include <QThreadPool>
#include <vector>

namespace velun {

/// The loaded translators, the thread that they run on and the downloads in progress. Translators
/// are loaded once and released when nothing was translated for a while, because a loaded model or
/// the programs of a pair take tens of megabytes. Main thread.
class TranslatorPool final : public QObject {
  Q_OBJECT

 public:
  /// How long translators stay loaded without work.
  static constexpr std::chrono::minutes kIdleTimeout{2};

  /// `backends` are in order of preference. `clock` must outlive the pool.
  TranslatorPool(std::vector<std::unique_ptr<TranslatorBackend>> backends, Clock& clock);

  /// Everything that the back ends offer now.
  std::vector<TranslationOffer> offers() const;

  TranslatorBackend& backendOf(const TranslationOffer& offer) const;

  /// Completes when `offer` can be used. Throws `Failure` or, soon after a stop request,
  /// `Cancelled`.
  static QCoro::Task<> install(std::shared_ptr<TranslatorPool> pool, TranslationOffer offer,
                               std::stop_token stop);

  /// Whether a translator waits for a download.
  bool isInstalling() const { return installing_ > 0; }

  /// The models of every back end.
  std::vector<PairModels> models() const;

  /// The translator of an installed offer, with the model that is the best now. Restarts the idle
  /// timeout.
  std::shared_ptr<TextTranslator> translator(const TranslationOffer& offer);

  /// Releases a translator. The next call of `translator` creates a new one.
  void forget(const TranslationOffer& offer);

  /// The one thread on which translators run. The destructor waits for what was started on it.
  QThreadPool& thread() { return thread_; }

 Q_SIGNALS:
  void installingChanged();

 private:
  struct Loaded {
    QString model;  ///< its id
    std::shared_ptr<TextTranslator> translator;
  };

  void countInstalls(int change);

  std::vector<std::unique_ptr<TranslatorBackend>> backends_;
  Clock& clock_;
  std::map<std::pair<int, LanguagePair>, Loaded> translators_;
  std::unique_ptr<ScheduledCall> release_;
  int installing_ = 0;
  QThreadPool thread_;  // last: ends before the members that its work uses
};

}  // namespace velun
