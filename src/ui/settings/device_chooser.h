// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/audio_platform.h"
#include "settings/app_settings.h"

#include <memory>
#include <QComboBox>

namespace velun {

/// Chooses the device of one input: the output that is captioned, or the microphone. The
/// first entry follows the computer's default device. Instead of an output, a program that plays
/// can be chosen, or all but it. What is chosen stays in the list while it is not connected.
/// Devices and programs are followed only while the chooser is visible. Main thread.
class DeviceChooser final : public QComboBox {
  Q_OBJECT

 public:
  /// Both must outlive the chooser.
  DeviceChooser(AppSettings& settings, AudioPlatform& audio, QWidget* parent = nullptr);
  /// Shows the device of that input.
  void setInput(AudioInput input);
  ~DeviceChooser() override;

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  /// Ignored, so that scrolling a form changes no setting.
  void wheelEvent(QWheelEvent* event) override;

 private:
  void present();
  void choose(int index);

  AppSettings& settings_;
  AudioPlatform& audio_;
  AudioInput input_ = AudioInput::computer;
  /// Null while hidden.
  std::unique_ptr<AudioTargets> targets_;
};

}  // namespace velun
