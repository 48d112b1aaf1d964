// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/failure.h"
#include "platform/foundation/one_shot.h"
#include "platform/translation/translation_session.h"

#include <functional>
#include <memory>
#include <vector>

namespace velun::test {

/// A translation session that answers when and as the test says. The script is shared with the
/// test, so that answers can also come after the session is gone.
class ScriptedTranslationSession final : public TranslationSession {
 public:
  struct Request {
    QString text;
    OneShot<QString> answer;

    void succeed(const QString& translation) const { answer.complete(translation); }
    void fail(const QString& description) const {
      answer.fail(std::make_exception_ptr(Failure(description)));
    }
  };

  struct Script {
    /// Every request so far, in order.
    std::vector<Request> requests;
    /// Answers every request at once; unset, the test answers.
    std::function<QString(const QString&)> translate;
    /// Whether the session cancels what is unanswered when it is destroyed.
    bool cancelsAtEnd = true;
    bool isOpen = true;
  };

  explicit ScriptedTranslationSession(std::shared_ptr<Script> script)
      : script_(std::move(script)) {}
  ~ScriptedTranslationSession() override {
    script_->isOpen = false;
    if (!script_->cancelsAtEnd) return;
    for (const Request& request : script_->requests) {
      request.answer.fail(std::make_exception_ptr(Cancelled()));
    }
  }

  QCoro::Task<QString> translate(QString text) override {
    if (!script_->translate) script_->requests.push_back({text, {}});
    return answer(script_, text);
  }

 private:
  static QCoro::Task<QString> answer(std::shared_ptr<Script> script, QString text) {
    if (script->translate) co_return script->translate(text);
    const OneShot<QString> pending = script->requests.back().answer;
    const QString translation = co_await pending;
    co_return translation;
  }

  std::shared_ptr<Script> script_;
};

}  // namespace velun::test
