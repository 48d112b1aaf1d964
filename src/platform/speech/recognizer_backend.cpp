// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/recognizer_backend.h"

#include "language/localization.h"

namespace velun {

QString RecognizerBackend::adviceIfTooSlow() const {
  return L("This computer is too busy for captions. Close other programs.",
           "컴퓨터가 너무 바빠 자막이 따라가지 못합니다. 다른 프로그램을 닫으세요.");
}

}  // namespace velun
