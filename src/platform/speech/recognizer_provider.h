// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/recognizer_backend.h"
#include "platform/speech/speech_platform.h"

#include <functional>
#include <memory>
#include <QString>
#include <QStringList>

namespace velun {

/// One kind of recognizer: its locales, what of it is installed, and how to create it. Main thread,
/// except the factories that it returns.
class RecognizerProvider {
 public:
  /// Creates a recognizer; called on the decode thread that will use it. Throws `Failure`.
  using Factory = std::function<std::unique_ptr<RecognizerBackend>()>;

  virtual ~RecognizerProvider() = default;

  /// Every locale that it can recognize, installed or downloadable, such as "en_US".
  virtual QStringList supportedLocales() const = 0;

  /// Whether the locale can be recognized now, without a download.
  virtual bool isInstalled(const QString& locale) const = 0;

  /// The factory of recognizers for an installed locale.
  virtual Factory factory(const QString& locale) const = 0;

  /// The model to download for the locale; null when there is none.
  virtual std::shared_ptr<SpeechModelOffer> offer(const QString& /*locale*/) { return nullptr; }

  /// Captions have run for a minute with a lesser recognizer although this one supports `locale`:
  /// it may download its model quietly for the next start.
  virtual void fetchInBackground(const QString& /*locale*/) {}
};

}  // namespace velun
