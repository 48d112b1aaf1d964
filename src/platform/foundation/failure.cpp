// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/failure.h"

namespace velun {

QString descriptionOf(const std::exception& error) {
  if (const auto* failure = dynamic_cast<const Failure*>(&error)) {
    return failure->errorDescription();
  }
  return QString::fromUtf8(error.what());
}

}  // namespace velun
