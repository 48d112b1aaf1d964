// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/neural/punctuation_helper.h"

#include <utility>

namespace velun {

using Kind = RecognizerMessage::Kind;

PunctuationHelper::PunctuationHelper(QString program, RecognizerSettings settings)
    : helper_(std::move(program), std::move(settings)) {}

PunctuationHelper::~PunctuationHelper() = default;

void PunctuationHelper::load() {
  try {
    helper_.start();
  } catch (const HelperEnded& end) {
    giveUp(end);
  }
}

QString PunctuationHelper::restored(const QString& text) {
  if (hasFailed_ || text.isEmpty()) return text;
  try {
    return exchange(text);
  } catch (const HelperEnded& end) {
    giveUp(end);
    return text;
  }
}

void PunctuationHelper::giveUp(const HelperEnded& end) {
  qCWarning(helperLog, "Punctuation is not restored any more (%s).", end.what());
  hasFailed_ = true;
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
