// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/input_source_menu.h"

#include "settings/app_settings.h"
#include "ui/caption/caption_appearance.h"
#include "ui/caption/caption_menu.h"
#include "ui/common/symbol.h"

#include <QActionGroup>

namespace velun {

QString symbolOf(AudioInput input) {
  return input == AudioInput::microphone ? QStringLiteral("mic.fill")
                                         : QStringLiteral("speaker.wave.2.fill");
}

void fillInputSourceMenu(CaptionMenu& menu, AppSettings& settings) {
  menu.clear();
  auto* choice = new QActionGroup(&menu);
  for (const AudioInput input : allAudioInputs) {
    const bool useMic = input == AudioInput::microphone;
    QAction* action = menu.addAction(title(input), &settings, [&settings, useMic] {
      if (settings.useMic() != useMic) settings.setUseMic(useMic);
    });
    action->setIcon(symbolIcon(symbolOf(input), CaptionAppearance::symbol));
    action->setCheckable(true);
    action->setChecked(settings.useMic() == useMic);
    choice->addAction(action);
  }
}

}  // namespace velun
