// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/models/model.h"
#include "platform/models/model_state.h"

#include <QDate>

namespace velun {

// Texts about models, in the interface language.

/// The name of a model for people: its title, or the languages that it translates.
QString nameText(const Model& model);

/// Such as "134 MB".
QString sizeText(std::int64_t bytes);

/// The lines below a recognition model's title: what it writes, its quality in `language`, its
/// sizes and its licence.
QStringList factsText(const Model& model, const QString& language, bool getsPunctuation);

/// The lines below a translation: the quality of `model`, the `bytes` to download for it and for
/// what else it needs, and its licence.
QStringList translationFactsText(const Model& model, std::int64_t bytes);

/// The same for a speaker model: its languages, its size and its licence.
QStringList speakerFactsText(const Model& model);

/// The same for the built-in recognizer.
QStringList builtInFactsText();

/// Such as "Installed on 22 November 2026 · 134 MB on disk".
QString installationText(const QDate& date, std::int64_t bytes);

/// Such as "57 of 134 MB · 3 MB/s · 25 seconds left".
QString progressText(const ModelState& state);

/// The licence for people: its name, and its makers' statement if it is not clear.
QString licenceText(const Model& model);

}  // namespace velun
