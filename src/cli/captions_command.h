// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/caption_source.h"
#include "captions/translated_session.h"
#include "cli/line_printer.h"
#include "cli/terminal_progress.h"
#include "cli/usage.h"

#include <array>
#include <memory>

namespace velun {

/// One run of `velun captions`: prints the lines of a source, with their translations, in order.
/// Main thread.
class CaptionsCommand final : public QObject {
  Q_OBJECT

 public:
  /// The process's exit statuses.
  enum Status { kDone = 0, kFailed = 1, kUsage = kUsageStatus, kInterrupted = 130 };

  /// What a run works with; all must outlive it. The printer writes to `lines`; errors and progress
  /// go to `messages`.
  struct Parts {
    TranslationPlatform& translation;
    const Clock& clock;
    LinePrinter& printer;
    std::FILE* lines;
    std::FILE* messages;
  };

  /// `session` is empty and tells the start. `source` is not started yet.
  CaptionsCommand(const CaptionArguments& arguments, const QString& localeID,
                  CaptionSession session, std::unique_ptr<CaptionSource> source, Parts parts);

  void start();

  /// Ends the run soon: the last words are still recognized and printed. A second call ends it at
  /// once.
  void interrupt();

 Q_SIGNALS:
  void finished(int status);

 private:
  void handle(const SpeechRecognitionEvent& event);
  void showDrafts();
  void take(const FinalEvent& event);
  void printSettledLines();
  void sourceEnded(const std::optional<QString>& error);
  void finishIfComplete();
  /// Ends the run if a line could not be written: nobody gets the ones that would follow. Returns
  /// whether it has ended.
  bool endIfUnwritten();
  void say(const QString& message);

  CaptionArguments arguments_;
  std::unique_ptr<CaptionSource> source_;
  Parts parts_;
  TranslatedSession lines_;
  TerminalProgress progress_;
  double startedAt_;
  /// How many lines were printed.
  std::size_t printed_ = 0;
  bool hasEnded_ = false;
  bool isInterrupted_ = false;
  bool isUnwritten_ = false;
  int status_ = kDone;
  std::optional<QString> shownStatus_;
  /// The unfinished text of each input.
  std::array<QString, allAudioInputs.size()> drafts_;
};

/// Why standard output could not be written, localized; `code` is an error number.
QString unwrittenText(int code);

}  // namespace velun
