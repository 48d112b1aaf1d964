// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/library/settings_notes.h"

namespace velun {

class DesktopPlatform;
class ModelStore;
class TranslationPlatform;

/// The notes of the settings window, from the services that know this machine.
class SettingsNotesText final : public SettingsNotes {
  Q_OBJECT

 public:
  /// All three must outlive the notes.
  SettingsNotesText(const DesktopPlatform& desktop, const TranslationPlatform& translation,
                    const ModelStore& models);

  bool hidesFromOthers() const override;
  QString captureHiding() const override;
  QString download() const override;

 private:
  const DesktopPlatform& desktop_;
  const TranslationPlatform& translation_;
  const ModelStore& models_;
};

}  // namespace velun
