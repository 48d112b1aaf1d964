// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/models/model_catalogue.h"
#include "platform/models/placed_model_file.h"
#include "platform/models/store/model_installer.h"

namespace velun {

/// Recognizes the file at `path` by its size and SHA-256 and copies it into the folder of its
/// model, together with files in the same folder that the model also needs. Installs the model if
/// that was all. The user's files are kept. See `ModelFilePlacer`.
PlacedModelFile placeModelFile(const ModelCatalogue& catalogue, const ModelInstaller& installer,
                               const QString& path, const std::function<void(double)>& progress,
                               const std::stop_token& stop);

}  // namespace velun
