// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/linux/built_in/built_in_backend.h"
#include "platform/speech/recognizer_provider.h"

namespace velun {

/// The recognizer that works the moment the program is installed: US English.
class BuiltInRecognizerProvider final : public RecognizerProvider {
 public:
  /// `writer` turns bare words into a written sentence; asked for anew at each start, called on
  /// the decode worker. Empty: only the first letter and "I" are upper case.
  using WriterSource = std::function<BuiltInBackend::Writer()>;

  explicit BuiltInRecognizerProvider(WriterSource writerSource = {});

  QStringList supportedLocales() const override;
  bool isInstalled(const QString& locale) const override;
  Factory factory(const QString& locale) const override;
  std::shared_ptr<AssetInstallationRequest> installationRequest(const QString& locale) override;
  void fetchInBackground(const QString& locale) override;

 private:
  WriterSource writerSource_;
};

}  // namespace velun
