// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/neural/punctuation_helper.h"

#include "language/localization.h"

#include <utility>

namespace velun {

using Kind = RecognizerMessage::Kind;

namespace {

/// What the user should know after the end of a helper.
QString textFor(const HelperEnded& end) {
  const std::optional<FileFault>& fault = end.fileFault();
  if (fault && fault->code != 0) {
    return L(QString("Captions have no punctuation, because a file of Velun cannot be read (%1). "
                     "Check the permissions of the file and its disk, or install Velun again.")
                 .arg(fault->description()),
             QString("Velun의 파일을 읽을 수 없어 자막에 문장 부호가 없습니다(%1). 파일의 권한과 "
                     "디스크를 확인하거나 Velun을 다시 설치하세요.")
                 .arg(fault->description()));
  }
  // A helper that can tell a reason has noticed that its files cannot be used.
  const bool hasReason = *end.what() != '\0';
  if (fault || hasReason) return missingPunctuationText();
  return L(
      "Captions have no punctuation, because the part of Velun that adds it does not respond. "
      "Start captions again.",
      "문장 부호를 넣는 Velun의 구성 요소가 응답하지 않아 자막에 문장 부호가 없습니다. 자막을 다시 "
      "시작하세요.");
}

}  // namespace

QString missingPunctuationText() {
  return L(
      "Captions have no punctuation, because a file of Velun is missing or damaged. Install Velun "
      "again.",
      "Velun의 파일이 없거나 손상되어 자막에 문장 부호가 없습니다. Velun을 다시 설치하세요.");
}

PunctuationHelper::PunctuationHelper(HelperProgram program, RecognizerSettings settings,
                                     std::chrono::milliseconds replyTimeout,
                                     std::chrono::milliseconds loadTimeout)
    : helper_(std::move(program), std::move(settings), replyTimeout, loadTimeout) {}

PunctuationHelper::~PunctuationHelper() = default;

void PunctuationHelper::load() {
  try {
    helper_.start();
  } catch (const HelperEnded& end) {
    giveUp(end);
  }
}

QString PunctuationHelper::restored(const QString& text) {
  if (failure_ || text.isEmpty()) return text;
  try {
    return exchange(text);
  } catch (const HelperEnded& end) {
    giveUp(end);
    return text;
  }
}

void PunctuationHelper::giveUp(const HelperEnded& end) {
  qCWarning(helperLog, "Punctuation is not restored any more (%s).", end.what());
  failure_ = textFor(end);
  helper_.end();
}

QString PunctuationHelper::exchange(const QString& text) {
  if (!helper_.isThere()) helper_.start();
  helper_.process().send(Kind::restore, text.toUtf8());
  while (true) {
    const RecognizerMessage message = helper_.process().receive();
    if (message.kind == Kind::restored) return QString::fromUtf8(message.body);
  }
}

}  // namespace velun
