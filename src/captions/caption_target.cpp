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
  return !settings.useMic() && settings.program().scope != ProgramChoice::Scope::all;
}

}  // namespace

AudioTarget captionTarget(const AppSettings& settings) {
  if (isOfProgram(settings)) return targetOf(settings.program());
  const auto input = settings.useMic() ? AudioInput::microphone : AudioInput::computer;
  return {deviceKind(input), settings.device().id, settings.device().name};
}

QString captionSourceTitle(const AppSettings& settings) {
  if (isOfProgram(settings)) return title(settings.program());
  return title(settings.useMic() ? AudioInput::microphone : AudioInput::computer);
}

}  // namespace velun
