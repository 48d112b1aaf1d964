// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/captions_command.h"

#include "language/localization.h"
#include "model/file_error_text.h"

#include <cerrno>
#include <utility>

namespace velun {

CaptionsCommand::CaptionsCommand(const CaptionArguments& arguments, const QString& localeID,
                                 CaptionSession session, std::unique_ptr<CaptionSource> source,
                                 Parts parts)
    : arguments_(arguments),
      source_(std::move(source)),
      parts_(parts),
      lines_(std::move(session), localeID, arguments.target, parts.translation, parts.clock),
      progress_(parts.messages),
      startedAt_(parts.clock.monotonicSeconds()) {
  connect(source_.get(), &CaptionSource::eventOccurred, this, &CaptionsCommand::handle);
  connect(source_.get(), &CaptionSource::ended, this, &CaptionsCommand::sourceEnded);
  connect(source_.get(), &CaptionSource::advanced, this,
          [this](double position, std::optional<double> duration) {
            // Drafts move faster than that, on the same terminal.
            if (hasEnded_ || arguments_.showsDrafts) return;
            progress_.show(position, duration, parts_.clock.monotonicSeconds() - startedAt_);
          });
  connect(&lines_, &TranslatedSession::settled, this, &CaptionsCommand::printSettledLines);
  connect(&lines_, &TranslatedSession::translationFailed, this, &CaptionsCommand::say);
}

void CaptionsCommand::start() {
  source_->start();
}

void CaptionsCommand::interrupt() {
  if (std::exchange(isInterrupted_, true)) {
    Q_EMIT finished(kInterrupted);
    return;
  }
  // Captions of live sound have no other end.
  if (arguments_.recording) {
    status_ = kInterrupted;
    say(L("The words that were already read are still written; interrupt again to end at once.",
          "이미 읽은 부분까지 자막을 쓰고 끝냅니다. 바로 끝내려면 한 번 더 중단하세요."));
  }
  source_->stop();
}

void CaptionsCommand::handle(const SpeechRecognitionEvent& event) {
  if (const auto* draft = std::get_if<DraftEvent>(&event)) {
    progress_.erase();
    drafts_[static_cast<std::size_t>(draft->input)] = draft->text;
    showDrafts();
  } else if (const auto* final = std::get_if<FinalEvent>(&event)) {
    take(*final);
  } else if (const auto* status = std::get_if<StatusEvent>(&event)) {
    if (status->text && status->text != shownStatus_) say(*status->text);
    shownStatus_ = status->text;
  }
}

void CaptionsCommand::showDrafts() {
  QStringList texts;
  for (const QString& text : drafts_) {
    if (!text.isEmpty()) texts += text;
  }
  parts_.printer.draft(texts.join(QStringLiteral(" | ")));
}

void CaptionsCommand::take(const FinalEvent& event) {
  drafts_[static_cast<std::size_t>(event.input)].clear();
  lines_.append(event);
}

void CaptionsCommand::printSettledLines() {
  progress_.erase();
  for (; printed_ < lines_.settledCount(); ++printed_) {
    parts_.printer.line(lines_.session().lines[printed_]);
  }
  if (!endIfUnwritten()) finishIfComplete();
}

void CaptionsCommand::sourceEnded(const std::optional<QString>& error) {
  hasEnded_ = true;
  if (error) {
    say(*error);
    status_ = kFailed;
  }
  finishIfComplete();
}

void CaptionsCommand::finishIfComplete() {
  if (!hasEnded_ || !lines_.isSettled()) return;
  progress_.erase();
  parts_.printer.finish();
  if (!endIfUnwritten()) Q_EMIT finished(status_);
}

bool CaptionsCommand::endIfUnwritten() {
  const int code = errno;
  if (std::ferror(parts_.lines) == 0) return false;
  if (std::exchange(isUnwritten_, true)) return true;
  say(unwrittenText(code));
  Q_EMIT finished(kFailed);
  return true;
}

QString unwrittenText(int code) {
  return fileErrorText(
      FileError(FileError::Operation::write, code, L("standard output", "표준 출력")));
}

void CaptionsCommand::say(const QString& message) {
  progress_.erase();
  std::fprintf(parts_.messages, "velun: %s\n", qUtf8Printable(message));
  std::fflush(parts_.messages);
}

}  // namespace velun
