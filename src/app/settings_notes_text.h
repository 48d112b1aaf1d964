// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/latest_job.h"
#include "ui/settings/settings_notes.h"

#include <memory>
#include <QStringList>

namespace velun {

class AppSettings;
class DesktopPlatform;
class ModelCatalogue;
class ModelStore;
class TranslationPlatform;

/// The notes of the settings window, from the services that know this machine.
class SettingsNotesText final : public SettingsNotes {
  Q_OBJECT

 public:
  /// All references must outlive the notes. `vocabulary` is the path of the built-in recognizer's
  /// language model, which is read when the user lists words; empty where there is none.
  SettingsNotesText(const DesktopPlatform& desktop, const TranslationPlatform& translation,
                    const ModelStore& models, std::shared_ptr<const ModelCatalogue> catalogue,
                    const AppSettings& settings, QString vocabulary);

  bool hidesFromOthers() const override;
  QString captureHiding() const override;
  QString download() const override;
  QString unknownWords() const override;
  bool hasSpeakerModel() const override;

 private:
  void findUnknownWords();

  const DesktopPlatform& desktop_;
  const TranslationPlatform& translation_;
  const ModelStore& models_;
  std::shared_ptr<const ModelCatalogue> catalogue_;
  const AppSettings& settings_;
  QString vocabulary_;
  QStringList unknown_;
  LatestJob search_;
};

}  // namespace velun
