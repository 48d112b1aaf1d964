// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/caption_target.h"

#include "audio/audio_input_kind.h"

namespace velun {

AudioTarget targetOf(const ProgramChoice& program) {
  const bool isOnly = program.scope == ProgramChoice::Scope::only;
  return {isOnly ? AudioTarget::Kind::program : AudioTarget::Kind::otherPrograms, program.name,
          program.name};
}

namespace {

bool isOfProgram(const AppSettings& settings) {
  return settings.captions(AudioInput::computer) &&
         settings.program().scope != ProgramChoice::Scope::all;
}

AudioTarget deviceTarget(const AppSettings& settings, AudioInput input) {
  const DeviceChoice& device = settings.device(input);
  return {deviceKind(input), device.id, device.name};
}

}  // namespace

CaptionTargets captionTargets(const AppSettings& settings) {
  const AudioTarget microphone = deviceTarget(settings, AudioInput::microphone);
  if (settings.useMic()) return microphone;
  const AudioTarget computer = isOfProgram(settings) ? targetOf(settings.program())
                                                     : deviceTarget(settings, AudioInput::computer);
  if (settings.captions(AudioInput::microphone)) return {computer, microphone};
  return computer;
}

QString captionSourceTitle(const AppSettings& settings) {
  const bool isBoth = settings.inputChoice() == InputChoice::both;
  if (!isOfProgram(settings)) return title(settings.inputChoice());
  const QString program = title(settings.program());
  return isBoth ? program + QStringLiteral(" + ") + title(AudioInput::microphone) : program;
}

}  // namespace velun
