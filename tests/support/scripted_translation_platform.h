// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/failure.h"
#include "platform/foundation/one_shot.h"
#include "platform/translation/pair_models.h"
#include "platform/translation/translation_platform.h"

#include <functional>
#include <memory>
#include <QHash>
#include <utility>
#include <vector>

namespace velun::test {

/// What one scripted translator does and has done. Shared with the test, so that a request can
/// also be completed after the translator is gone.
struct TranslationScript {
  struct Request {
    QString text;
    std::stop_token stop;
    OneShot<QString> answer;

    void succeed(const QString& translation) const { answer.complete(translation); }
    void fail(const QString& description) const {
      answer.fail(std::make_exception_ptr(Failure(description)));
    }
  };

  QString source;
  QString target;
  /// Every request so far that `translate` did not complete, in order.
  std::vector<Request> requests;
  /// Translates every text at once. Unset, the test completes the requests.
  std::function<QString(const QString&)> translate;
  /// Whether a stop request ends the request in progress.
  bool cancels = true;
  /// Whether `prepare` waits for `prepared`.
  bool waitsForPreparation = false;
  OneShot<bool> prepared;
  bool isOpen = true;
};

class ScriptedTranslator final : public Translator {
 public:
  explicit ScriptedTranslator(std::shared_ptr<TranslationScript> script)
      : script_(std::move(script)) {}
  ~ScriptedTranslator() override { script_->isOpen = false; }

  QCoro::Task<> prepare(std::stop_token stop) override {
    if (!script_->waitsForPreparation) co_return;
    const OneShot<bool> prepared = script_->prepared;
    cancelOnStop(prepared, stop);
    co_await prepared;
  }

  QCoro::Task<QString> translate(QString text, std::stop_token stop) override {
    if (script_->translate) co_return script_->translate(text);
    script_->requests.push_back({text, stop, {}});
    const OneShot<QString> answer = script_->requests.back().answer;
    if (script_->cancels) cancelOnStop(answer, stop);
    const QString translation = co_await answer;
    co_return translation;
  }

 private:
  template <class T>
  void cancelOnStop(const OneShot<T>& answer, const std::stop_token& stop) {
    cancel_.emplace(stop, [answer] { answer.fail(std::make_exception_ptr(Cancelled())); });
  }

  std::shared_ptr<TranslationScript> script_;
  std::optional<std::stop_callback<std::function<void()>>> cancel_;
};

/// Makes translators that follow a script.
class ScriptedTranslationPlatform final : public TranslationPlatform {
 public:
  std::unique_ptr<Translator> makeTranslator(const QString& source,
                                             const QString& target) override {
    auto script = std::make_shared<TranslationScript>();
    script->source = source;
    script->target = target;
    script->translate = translate;
    scripts.push_back(script);
    if (prepareScript) prepareScript(*script);
    return std::make_unique<ScriptedTranslator>(script);
  }
  QCoro::Task<QStringList> supportedLanguages() override {
    const QStringList list = languages;
    co_return list;
  }
  std::vector<std::optional<qint64>> downloadBytes(const QString&,
                                                   const QStringList& targets) const override {
    std::vector<std::optional<qint64>> all;
    for (const QString& target : targets) all.push_back(bytes.value(target, 0));
    return all;
  }
  std::vector<PairModels> models() const override { return pairs; }
  std::optional<QString> activity() const override { return busyWith; }

  void setActivity(const std::optional<QString>& text) {
    busyWith = text;
    Q_EMIT activityChanged();
  }

  /// Applies to every translator made from now on.
  std::function<QString(const QString&)> translate;
  /// Called for every script before its translator is used.
  std::function<void(TranslationScript&)> prepareScript;
  /// The scripts of every translator made so far, in order.
  std::vector<std::shared_ptr<TranslationScript>> scripts;
  std::optional<QString> busyWith;
  QStringList languages;
  /// What has to be downloaded for a target language; those that are not in it are installed.
  QHash<QString, qint64> bytes;
  std::vector<PairModels> pairs;
};

}  // namespace velun::test
