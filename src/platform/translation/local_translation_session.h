// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/one_shot.h"
#include "platform/translation/translation_services.h"
#include "platform/translation/translation_session.h"

#include <deque>
#include <memory>
#include <optional>
#include <QObject>
#include <stop_token>
#include <vector>

namespace velun {

/// A session over the translators of this computer. It begins to download what is missing and to
/// load what is needed at once, so that the first text waits less.
class LocalTranslationSession final : public QObject, public TranslationSession {
 public:
  LocalTranslationSession(std::shared_ptr<TranslationServices> services,
                          const TranslationConfiguration& configuration);
  ~LocalTranslationSession() override;

  QCoro::Task<QString> translate(QString text) override;

 private:
  /// A text to translate; without one only the translators are to be made ready.
  struct Request {
    explicit Request(std::optional<QString> what) : text(std::move(what)) {}
    std::optional<QString> text;
    OneShot<QString> answer;
  };

  OneShot<QString> enqueue(std::optional<QString> text);
  QCoro::Task<> answerRequests();
  QCoro::Task<> findRoute();
  OneShot<QString> startWork(const std::optional<QString>& text);
  void dropRoute();

  std::shared_ptr<TranslationServices> services_;
  TranslationConfiguration configuration_;
  std::vector<TranslationStep> route_;  // empty until everything on it is installed
  std::deque<Request> requests_;        // the first one is being answered
  bool isAnswering_ = false;
  std::stop_source stop_;
};

}  // namespace velun
