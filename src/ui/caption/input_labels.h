// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "settings/app_settings.h"
#include "ui/caption/line_label.h"

namespace velun {

struct CaptionSession;

/// The label of an input, in a colour that can be read on the panel.
LineLabel inputLabel(const CaptionSession& session, const AppSettings& settings,
                     const PanelStyle& style, AudioInput input);

/// Labels the lines of a session for which both inputs were captioned; null for any other.
LineLabeller inputLabels(const CaptionSession& session, const AppSettings& settings,
                         const PanelStyle& style);

/// One label of two, in the colour of the first; the other one if one is empty.
LineLabel joined(const LineLabel& input, const LineLabel& speaker);

}  // namespace velun
