// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/failure.h"
#include "platform/foundation/one_shot.h"
#include "platform/translation/translator_backend.h"

#include <algorithm>
#include <atomic>
#include <QSemaphore>
#include <QStringList>

namespace velun::test {

/// What the scripted translators of one back end do and have done.
struct BackendScript {
  std::vector<LanguagePair> installed;
  std::vector<LanguagePair> downloadable;
  qint64 downloadBytes = 0;                    ///< of each pair
  QString usedModel;                           ///< for each pair
  QStringList installs;                        ///< "en-ko"
  std::vector<OneShot<bool>> pendingInstalls;  ///< true: succeeds; false: fails

  int made = 0;  ///< translators
  std::atomic<int> loads = 0;
  std::atomic<int> living = 0;
  std::atomic<bool> waits = false;  ///< Each text waits for `go` or a stop request.
  std::atomic<bool> ignoresStop = false;
  QSemaphore go;
  std::atomic<int> waiting = 0;
};

/// Marks texts with its direction: "hello" becomes "hello/en-ko". A text with "fail" in it fails.
class ScriptedTranslator final : public TextTranslator {
 public:
  ScriptedTranslator(std::shared_ptr<BackendScript> script, QString name)
      : script_(std::move(script)), name_(std::move(name)) {
    ++script_->living;
  }
  ~ScriptedTranslator() override { --script_->living; }

  void load() override { ++script_->loads; }

  QString translate(const QString& text, std::stop_token stop) override {
    if (script_->waits) {
      ++script_->waiting;
      while (!script_->go.tryAcquire(1, 5)) {
        if (stop.stop_requested() && !script_->ignoresStop) throw Cancelled();
      }
    }
    if (text.contains(QStringLiteral("fail"))) throw Failure(QStringLiteral("It failed."));
    return text + u'/' + name_;
  }

 private:
  std::shared_ptr<BackendScript> script_;
  QString name_;
};

class ScriptedBackend final : public TranslatorBackend {
 public:
  explicit ScriptedBackend(std::shared_ptr<BackendScript> script) : script_(std::move(script)) {}

  std::vector<LanguagePair> installedPairs() const override { return script_->installed; }
  std::vector<LanguagePair> downloadablePairs() const override { return script_->downloadable; }

  qint64 downloadBytes(const LanguagePair&) const override { return script_->downloadBytes; }

  QString usedModel(const LanguagePair&) const override { return script_->usedModel; }

  QCoro::Task<> install(LanguagePair pair, std::stop_token) override {
    const std::shared_ptr<BackendScript> script = script_;
    script->installs += nameOf(pair);
    const OneShot<bool> pending;
    script->pendingInstalls.push_back(pending);
    const bool succeeds = co_await pending;
    if (!succeeds) throw Failure(QStringLiteral("No connection."));
    std::erase(script->downloadable, pair);
    script->installed.push_back(pair);
  }

  std::shared_ptr<TextTranslator> makeTranslator(const LanguagePair& pair) override {
    ++script_->made;
    return std::make_shared<ScriptedTranslator>(script_, nameOf(pair));
  }

 private:
  static QString nameOf(const LanguagePair& pair) { return pair.source + u'-' + pair.target; }

  std::shared_ptr<BackendScript> script_;
};

}  // namespace velun::test
