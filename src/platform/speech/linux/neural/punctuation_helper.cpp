// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/linux/neural/punctuation_helper.h"

#include <utility>

namespace velun {

using Kind = RecognizerMessage::Kind;

PunctuationHelper::PunctuationHelper(QString program, RecognizerSettings settings)
    : program_(std::move(program)), settings_(std::move(settings)) {}

PunctuationHelper::~PunctuationHelper() = default;

QString PunctuationHelper::restored(const QString& text) {
  if (hasFailed_ || text.isEmpty()) return text;
  try {
    return exchange(text);
  } catch (const HelperEnded& end) {
    qWarning("Punctuation is not restored any more (%s).", end.what());
    hasFailed_ = true;
    helper_.reset();
    return text;
  }
}

QString PunctuationHelper::exchange(const QString& text) {
  if (!helper_) {
    helper_ = std::make_unique<HelperProcess>(program_);
    helper_->send(Kind::configure, settings_.toJson());
    while (helper_->receive(HelperProcess::kLoadPatience).kind != Kind::ready) {
    }
  }
  helper_->send(Kind::restore, text.toUtf8());
  while (true) {
    const RecognizerMessage message = helper_->receive();
    if (message.kind == Kind::restored) return QString::fromUtf8(message.body);
  }
}

}  // namespace velun
