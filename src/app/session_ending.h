// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <QCoroTask>
#include <QObject>
#include <QPointer>
#include <QString>
#include <vector>

namespace velun {

class CaptionViewModel;
class ModalQuestion;
class RecordingQueue;

/// Ends the current session: stops captions, asks about unsaved lines, and then starts a new
/// session or lets the program end. Before the program ends it also asks about recordings that are
/// not finished. If the user cancels, captions continue. Main thread.
class SessionEnding final : public QObject {
  Q_OBJECT

 public:
  /// Called with the decision whether the program ends.
  using TerminationReply = std::function<void(bool shouldTerminate)>;

  /// All references must outlive it.
  SessionEnding(CaptionViewModel& model, const RecordingQueue& recordings, ModalQuestion& question);

  /// Replaces the session by a new one. Ignored during a decision.
  void newSession();

  /// Replies from the event loop. Requests made during a decision share its reply.
  void prepareToTerminate(TerminationReply reply);

  /// Turns captions on again if a decision for the end has stopped them. Call it when the end that
  /// was decided does not come.
  void resumeCaptions();

  /// A quit is being decided.
  bool isTerminating() const { return terminating_; }
  /// A quit or a new session is being decided.
  bool isDeciding() const { return terminating_ || replacing_; }

  /// Writes the session for the last time, for an end that cannot wait. Nothing is asked or started
  /// afterwards.
  void endNow();

 Q_SIGNALS:
  /// The model has a new session.
  void sessionReplaced();
  /// Captions have ended; the questions about recordings and unsaved lines before quitting come
  /// next.
  void terminationQuestionReached();

 private:
  static QCoro::Task<> decideNewSession(QPointer<SessionEnding> self, bool wasRunning);
  static QCoro::Task<> decideTermination(QPointer<SessionEnding> self, bool wasRunning);
  void beginTermination(bool wasRunning);
  bool wantsCaptions();
  /// Completes when captions are off and the session's file is on the disk.
  static QCoro::Task<> stopCaptions(QPointer<SessionEnding> self);
  /// Asks about unsaved lines. Returns whether the session may be ended.
  static QCoro::Task<bool> confirm(QPointer<SessionEnding> self, QString title);

  CaptionViewModel& model_;
  const RecordingQueue& recordings_;
  ModalQuestion& question_;
  /// A new session is being decided.
  bool replacing_ = false;
  bool terminating_ = false;
  bool ended_ = false;
  /// The last decision was for the end and stopped captions, which have not been started since.
  bool hasStoppedCaptions_ = false;
  std::vector<TerminationReply> replies_;
};

}  // namespace velun
