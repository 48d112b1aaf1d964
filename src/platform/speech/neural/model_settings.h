// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/models/model.h"
#include "platform/speech/helper/recognizer_settings.h"

#include <QVersionNumber>

namespace velun {

/// The helper's configuration for `model`, whose files are in `folder`, in one of its locales.
/// Threads, punctuation and libraries are not set.
RecognizerSettings modelSettings(const Model& model, const QString& folder, const QString& locale);

/// Whether the model runs in libvosk instead of sherpa-onnx.
bool runsInVosk(const Model& model);

/// The oldest version of sherpa-onnx that can run the model; null if any can.
QVersionNumber minimumLibrary(const Model& model);

}  // namespace velun
