// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoroTask>
#include <QString>
#include <stop_token>

namespace velun {

/// Translates from one language to another. Main thread. One call at a time; keep the translator
/// until the call has completed.
class Translator {
 public:
  virtual ~Translator() = default;

  /// Downloads and loads what is missing, so that the first text waits less. Throws `Failure` or,
  /// soon after a stop request, `Cancelled`. `translate` tries again what failed here.
  virtual QCoro::Task<> prepare(std::stop_token stop) = 0;

  /// The translation of one text. Throws `Failure` with a text for the user, after which the next
  /// text may succeed, or `Cancelled` soon after a stop request.
  virtual QCoro::Task<QString> translate(QString text, std::stop_token stop) = 0;
};

}  // namespace velun
