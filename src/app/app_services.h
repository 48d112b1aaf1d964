// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/modal_question.h"
#include "captions/recording_queue.h"
#include "ui/common/file_panels.h"
#include "ui/library/history_view_model.h"
#include "ui/menubar/credit.h"
#include "ui/models/model_services.h"
#include "ui/settings/settings_notes.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QPrinter;

namespace velun {

class ApplicationService;
class AudioPlatform;
class BetterCaptions;
class CaptionFeed;
class Clock;
class DesktopPlatform;
class FileManager;
class GlobalShortcuts;
class LibrarySettings;
class LoginStart;
class PreferenceStore;
class SharingSettings;
class SmallerRecognizer;
class SoundSettings;
class TranslationPlatform;
class TrayHost;
class UpdateChecker;

/// The services that the coordinator uses; all of them outlive it.
struct AppServices {
  PreferenceStore& preferences;
  DesktopPlatform& desktop;
  TranslationPlatform& translation;
  TrayHost& trayHost;
  ApplicationService& application;
  FileManager& files;
  UpdateChecker& updater;
  ModalQuestion& question;
  Clock& clock;
  FilePanels panels;
  HistoryViewModel::Trash trash;
  /// May be null.
  const SettingsNotes* notes = nullptr;
  /// May be null.
  const ModelServices* models = nullptr;
  /// May be null.
  BetterCaptions* betterCaptions = nullptr;
  /// May be null.
  SmallerRecognizer* smallerRecognizer = nullptr;
  /// May be null.
  LoginStart* loginStart = nullptr;
  /// Null where devices cannot be chosen.
  AudioPlatform* audio = nullptr;
  /// May be null.
  SoundSettings* soundSettings = nullptr;
  /// May be null.
  GlobalShortcuts* shortcuts = nullptr;
  /// May be null: then other programs get nothing of the captions.
  SharingSettings* sharing = nullptr;
  /// May be null.
  CaptionFeed* feed = nullptr;
  /// Asks for a title, beginning with the present one; nullopt: the user has cancelled.
  std::function<std::optional<QString>(const QString&)> askTitle = {};
  /// Asks for the right text of a line; nullopt: the user has cancelled.
  std::function<std::optional<QString>(const Line&)> askCorrection = {};
  /// Asks for another name for a speaker, one of the second list or a new one; nullopt: the user
  /// has cancelled or changed nothing.
  std::function<std::optional<QString>(const QString&, const QStringList&)> askSpeaker = {};
  /// Asks for the printer of a job with this title; null: the user has cancelled.
  std::function<std::shared_ptr<QPrinter>(const QString&)> askPrinter = {};
  /// May be null: then no session gets a title by itself.
  LibrarySettings* library = nullptr;
  /// Null where recordings cannot be captioned.
  RecordingQueue::MakeSource recordingSource = {};
  /// Listed in "About Velun".
  std::vector<Credit> credits;
};

}  // namespace velun
