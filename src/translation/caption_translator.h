// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/line.h"
#include "platform/foundation/life.h"
#include "platform/translation/translation_session.h"

#include <functional>
#include <memory>
#include <optional>
#include <QCoroTask>
#include <QObject>
#include <QUuid>
#include <vector>

namespace velun {

class LineQueue;

/// Translates finished lines one at a time, in the order in which they were queued, while a
/// translation session is open. Main thread.
class CaptionTranslator final : public QObject {
  Q_OBJECT

 public:
  explicit CaptionTranslator(QObject* parent = nullptr);
  ~CaptionTranslator() override;

  /// Finds a line of the running session by its id; null when it is gone.
  std::function<const Line*(const QUuid& id)> lineWithID;

  /// The lines of the running session, in order. Unset, there are none.
  std::function<const std::vector<Line>&()> lines;

  std::function<void(const QUuid& id, const QString& language, const QString& text)> onTranslation;

  /// None clears the error.
  std::function<void(const std::optional<QString>& message)> onError;

  /// The languages for which a session is to be opened; none: no translation.
  const std::optional<TranslationConfiguration>& configuration() const { return configuration_; }

  /// Whether both identifiers name the same language; regions and scripts do not count.
  static bool hasSameLanguage(const QString& sourceID, const QString& targetID);

  /// Begins a new epoch: ends the run under way and publishes a configuration, or none. The source
  /// is the language of the locale `sourceID` without its region, the target is `targetID`.
  void configure(bool enabled, bool hasContent, const QString& sourceID, const QString& targetID);

  /// Queues a line in the run under way; without one it is found by the next run.
  void enqueue(const QUuid& id);

  /// Translates with `session` until the epoch ends or another run begins. The session is let go
  /// at that moment, an unanswered request with it. Never fails.
  QCoro::Task<> run(std::shared_ptr<TranslationSession> session);

 Q_SIGNALS:
  /// Emitted only when it is a different one.
  void configurationChanged();

 private:
  static QCoro::Task<> translateQueued(std::weak_ptr<CaptionTranslator> self,
                                       std::shared_ptr<LineQueue> queue);
  void publish(const std::optional<TranslationConfiguration>& configuration);
  void endRun();
  bool isCurrent(const LineQueue& queue) const;
  bool needsTranslation(const Line& line) const;
  std::optional<QString> textToTranslate(const QUuid& id) const;

  std::optional<TranslationConfiguration> configuration_;
  std::optional<TranslationConfiguration> lastConfiguration_;
  QString sourceID_;
  QString targetID_;
  /// The run under way: its queue, which also names the epoch, and its session. Null without one.
  std::shared_ptr<LineQueue> queue_;
  std::shared_ptr<TranslationSession> session_;
  Life<CaptionTranslator> life_{this};
};

}  // namespace velun
