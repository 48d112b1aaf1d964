// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/input_choice.h"

#include "language/localization.h"
#include "language/raw_value.h"

namespace velun {

QString rawValue(InputChoice choice) {
  switch (choice) {
    case InputChoice::computer:
      return rawValue(AudioInput::computer);
    case InputChoice::microphone:
      return rawValue(AudioInput::microphone);
    case InputChoice::both:
      return QStringLiteral("both");
  }
  Q_UNREACHABLE();
}

std::optional<InputChoice> inputChoiceFromRawValue(const QString& raw) {
  return valueFromRaw(allInputChoices, raw);
}

QString title(InputChoice choice) {
  switch (choice) {
    case InputChoice::computer:
      return title(AudioInput::computer);
    case InputChoice::microphone:
      return title(AudioInput::microphone);
    case InputChoice::both:
      return L("Computer and Microphone", "컴퓨터와 마이크");
  }
  Q_UNREACHABLE();
}

}  // namespace velun
