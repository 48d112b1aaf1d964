// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace velun {

class ApplicationService;
class Clock;
class DesktopPlatform;
class FileManager;
class ModalQuestion;
class PreferenceStore;
class TranslationPlatform;
class TrayHost;

/// What the coordinator stands on; all of it outlives the coordinator.
struct AppServices {
  PreferenceStore& preferences;
  DesktopPlatform& desktop;
  TranslationPlatform& translation;
  TrayHost& trayHost;
  ApplicationService& application;
  FileManager& files;
  ModalQuestion& question;
  Clock& clock;
};

}  // namespace velun
