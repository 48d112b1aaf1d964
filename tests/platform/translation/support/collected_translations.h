// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/failure.h"
#include "platform/foundation/one_shot.h"
#include "platform/translation/translator.h"

#include <memory>
#include <QStringList>

namespace velun::test {

/// Uses a translator as its owner does: prepares it, then gives it texts one at a time. Keeps the
/// results in order: the translation, "error: " and the description, or "cancelled".
class CollectedTranslations {
 public:
  explicit CollectedTranslations(std::unique_ptr<Translator> translator)
      : translator_(std::move(translator)) {
    prepare(translator_, prepared_, stop_.get_token());
  }
  ~CollectedTranslations() { stop(); }

  /// Translates the texts after one another. The last call must have completed.
  void translate(const QStringList& texts) {
    collect(translator_, prepared_, texts, results_, stop_.get_token());
  }

  /// Requests a stop.
  void stop() { stop_.request_stop(); }

  const QStringList& texts() const { return *results_; }

 private:
  static QCoro::Task<> prepare(std::shared_ptr<Translator> translator, OneShot<bool> prepared,
                               std::stop_token stop) {
    try {
      QCoro::Task<> task = translator->prepare(stop);
      co_await task;
    } catch (const std::exception&) {
      // The next text reports it.
    }
    prepared.complete(true);
  }

  static QCoro::Task<> collect(std::shared_ptr<Translator> translator, OneShot<bool> prepared,
                               QStringList texts, std::shared_ptr<QStringList> results,
                               std::stop_token stop) {
    co_await prepared;
    for (const QString& text : texts) {
      QString result;
      try {
        QCoro::Task<QString> task = translator->translate(text, stop);
        result = co_await task;
      } catch (const Cancelled&) {
        result = QStringLiteral("cancelled");
      } catch (const std::exception& error) {
        result = QStringLiteral("error: ") + descriptionOf(error);
      }
      results->append(result);
    }
  }

  std::shared_ptr<Translator> translator_;
  OneShot<bool> prepared_;
  std::stop_source stop_;
  std::shared_ptr<QStringList> results_ = std::make_shared<QStringList>();
};

}  // namespace velun::test
