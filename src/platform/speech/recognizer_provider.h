// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/recognizer_backend.h"
#include "platform/speech/speech_platform.h"

#include <functional>
#include <memory>
#include <QString>
#include <QStringList>

namespace velun {

/// One kind of recognizer: which locales it knows, what is installed of it, and how to make it.
/// Main thread, except the factories that it gives out.
class RecognizerProvider {
 public:
  /// Makes a recognizer; called on the decode worker that will use it. Throws `Failure`.
  using Factory = std::function<std::unique_ptr<RecognizerBackend>()>;

  virtual ~RecognizerProvider() = default;

  /// Every locale that it can recognize, installed or to be downloaded, such as "en_US".
  virtual QStringList supportedLocales() const = 0;

  /// Whether the locale can be recognized now, without a download.
  virtual bool isInstalled(const QString& locale) const = 0;

  /// What makes the recognizer of a locale that is installed.
  virtual Factory factory(const QString& locale) const = 0;

  /// What installs the locale; null when it cannot be downloaded.
  virtual std::shared_ptr<AssetInstallationRequest> installationRequest(const QString& locale) = 0;

  /// Captions have been running for a minute with a lesser recognizer although this one knows
  /// `locale`: it may fetch its model quietly for the next start.
  virtual void fetchInBackground(const QString& locale) = 0;
};

}  // namespace velun
