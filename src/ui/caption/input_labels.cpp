// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/input_labels.h"

#include "model/caption_session.h"

namespace velun {

LineLabel inputLabel(const CaptionSession& session, const AppSettings& settings,
                     const PanelStyle& style, AudioInput input) {
  const auto& name =
      input == AudioInput::microphone ? session.microphoneName : session.computerName;
  return {name.value_or(QString()), readableOn(style.background, settings.inputLabel(input).color)};
}

LineLabel joined(const LineLabel& input, const LineLabel& speaker) {
  if (input.name.isEmpty()) return speaker;
  if (speaker.name.isEmpty()) return input;
  return {input.name + QStringLiteral(" · ") + speaker.name, input.color};
}

LineLabeller inputLabels(const CaptionSession& session, const AppSettings& settings,
                         const PanelStyle& style) {
  if (!session.computerName && !session.microphoneName) return {};
  const LineLabel computer = inputLabel(session, settings, style, AudioInput::computer);
  const LineLabel microphone = inputLabel(session, settings, style, AudioInput::microphone);
  return [computer, microphone](const Line& line) {
    if (!line.input) return LineLabel();
    return *line.input == AudioInput::microphone ? microphone : computer;
  };
}

}  // namespace velun
