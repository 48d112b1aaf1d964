// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/models/model_list.h"
#include "ui/models/model_services.h"

namespace velun {

// What the lists of models have in common. Main thread.

/// The buttons of a model for what the store can do with it now.
std::vector<ModelRowAction> storeActions(const ModelStore& store, const Model& model);

/// The buttons of downloads in this stage of which nothing is installed.
std::vector<ModelRowAction> downloadActions(ModelState::Stage stage);

/// The button that removes installed models of this kind.
ModelRowAction removeAction(ModelKind kind, bool isUsed);

/// Fills in the progress and the failure of the model's download.
void showState(ModelRow& row, const ModelState& state);

/// Shows the makers' statements of licences that are not clear. Returns whether the user agrees.
bool agreesToLicences(ModalQuestion& question, const std::vector<Model>& models);

/// Downloads the models, over a metered connection only if the user agrees.
void downloadAsked(const ModelServices& services, const std::vector<Model>& models);

/// Asks whether to remove `title`, then removes the models; reports a failure. `note` is a further
/// sentence of the question; may be empty.
void removeAsked(const ModelServices& services, const QString& title,
                 const std::vector<Model>& models, const QString& note = {});

}  // namespace velun
