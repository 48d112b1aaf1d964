// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/recording_queue.h"
#include "support/scripted_audio_platform.h"
#include "support/scripted_login_start.h"
#include "support/scripted_shortcuts.h"
#include "support/scripted_source.h"
#include "ui/common/app_commands.h"
#include "ui/common/shortcut_set.h"
#include "ui/library/history_window_controller.h"
#include "ui/models/models_fixture.h"
#include "ui/settings/settings_window_controller.h"

#include <memory>
#include <QImage>
#include <QPointer>
#include <QStringList>
#include <QTemporaryDir>

namespace velun::test {

/// A picture of a window at a device pixel ratio, without the desktop's frame. Waits until the
/// window no longer changes.
QImage pictureOf(QWidget& window, int scale);

/// The program's windows with sample data, to take pictures of; all but the caption panel.
class ShownWindows {
 public:
  /// Their names, as `show` takes them.
  static const QStringList& names();

  explicit ShownWindows(AppLanguage language);

  /// Shows a window and waits until it has its data.
  QWidget& show(const QString& name);

 private:
  QWidget& library();
  QWidget& emptyLibrary();
  /// A page of the settings, counted from 0.
  QWidget& settings(int page);
  QWidget& exporting();
  QWidget& recordings();
  QWidget& about();
  QWidget& updates();
  QWidget& showDialog(std::unique_ptr<QWidget> content, QSize size);
  void writeSessions() const;
  std::unique_ptr<CaptionSource> makeSource();

  QTemporaryDir folder_;
  QTemporaryDir emptyFolder_;
  QTemporaryDir recordingsFolder_;
  ModelsFixture fixture_;
  ModelServices services_;
  ScriptedAudioPlatform audio_;
  ScriptedLoginStart login_;
  ScriptedShortcuts keys_;
  AppCommands commands_;
  ShortcutSet shortcuts_;
  HistoryViewModel history_;
  HistoryViewModel noHistory_;
  HistoryWindowController library_;
  HistoryWindowController emptyLibrary_;
  SettingsWindowController settings_;
  RecordingQueue recordings_;
  /// Of the recording that is captioned.
  QPointer<ScriptedSource> source_;
  std::unique_ptr<QWidget> dialog_;
};

}  // namespace velun::test
