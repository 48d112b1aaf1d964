// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/failure.h"
#include "platform/translation/translation_session.h"

#include <memory>
#include <QStringList>

namespace velun::test {

/// Starts translations and keeps their results in the order in which they come: the translation,
/// "error: " and the description, or "cancelled".
class CollectedTranslations {
 public:
  void start(TranslationSession& session, const QString& text) {
    collect(session.translate(text), results_);
  }
  void start(TranslationSession& session, const char* text) {
    start(session, QString::fromUtf8(text));
  }

  const QStringList& texts() const { return *results_; }

 private:
  static QCoro::Task<> collect(QCoro::Task<QString> task, std::shared_ptr<QStringList> results) {
    QString result;
    try {
      result = co_await task;
    } catch (const Cancelled&) {
      result = QStringLiteral("cancelled");
    } catch (const std::exception& error) {
      result = QStringLiteral("error: ") + descriptionOf(error);
    }
    results->append(result);
  }

  std::shared_ptr<QStringList> results_ = std::make_shared<QStringList>();
};

}  // namespace velun::test
