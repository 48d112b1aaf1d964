// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language_model.h"

/// The weighted sum of the probabilities of models, with the entries of all. Weights add up to 1.
LanguageModel mixed(const std::vector<const LanguageModel*>& models,
                    const std::vector<double>& weights);

/// Removes the entries whose loss changes the model least (Stolcke 1998) until at most `limit`
/// entries are left, words alone not counted. Entries that are the context of others stay.
LanguageModel pruned(const LanguageModel& model, std::size_t limit, const Vocabulary& vocabulary);
