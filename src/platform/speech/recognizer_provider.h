// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/recognizer_backend.h"
#include "platform/speech/recognizer_candidate.h"
#include "platform/speech/speech_platform.h"

#include <functional>
#include <memory>
#include <QString>
#include <QStringList>
#include <vector>

namespace velun {

/// One kind of recognizer: its locales, the recognizers of each, and how to create them. Main
/// thread, except the factories that it returns.
class RecognizerProvider {
 public:
  /// Creates a recognizer; called on the decode thread that will use it. Throws `Failure`.
  using Factory = std::function<std::unique_ptr<RecognizerBackend>()>;

  virtual ~RecognizerProvider() = default;

  /// Every locale that it can recognize, installed or downloadable, such as "en_US".
  virtual QStringList supportedLocales() const = 0;

  /// Its recognizers of the locale, from best to worst. Whether they are chosen or suit this
  /// machine is not set.
  virtual std::vector<RecognizerCandidate> candidates(const QString& locale) const = 0;

  /// Whether an optional part of an installed candidate, such as its punctuation model, is being
  /// downloaded.
  virtual bool isBeingCompleted(const QString& /*locale*/, const QString& /*id*/) const {
    return false;
  }

  /// The factory of an installed candidate.
  virtual Factory makeFactory(const QString& locale, const QString& id) const = 0;

  /// The download of a candidate; null when there is none.
  virtual std::shared_ptr<SpeechModelOffer> offer(const QString& /*locale*/,
                                                  const QString& /*id*/) {
    return nullptr;
  }

  /// Whether one of its recognizers of the locale can be used without a download.
  bool isInstalled(const QString& locale) const;
};

}  // namespace velun
