// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

namespace velun {

/// Notes about this machine for the settings window, in the interface language; empty without
/// anything to tell. Main thread.
class SettingsNotes : public QObject {
  Q_OBJECT

 public:
  /// Whether the caption window is kept off other people's screens; only then may the settings
  /// promise it.
  virtual bool hidesFromOthers() const = 0;
  /// How far this desktop hides the caption window from screen sharing.
  virtual QString captureHiding() const = 0;
  /// The download that is running in the background.
  virtual QString download() const = 0;
  /// Which of the user's names and terms the built-in recognizer cannot learn.
  virtual QString unknownWords() const = 0;
  /// Whether a model is installed that tells speakers apart.
  virtual bool hasSpeakerModel() const = 0;

 Q_SIGNALS:
  /// A note may have changed.
  void changed();
};

}  // namespace velun
