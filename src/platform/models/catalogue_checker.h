// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/failure.h"

#include <QString>

namespace velun {

/// Throws failures about the model catalogue that name the model.
class CatalogueChecker {
 public:
  explicit CatalogueChecker(QString where) : where_(std::move(where)) {}

  /// Throws `Failure` unless `isRight`.
  void require(bool isRight, const char* what) const {
    if (!isRight) throw Failure(QString("Model catalogue: %1: %2").arg(where_, what));
  }

 private:
  QString where_;
};

}  // namespace velun
