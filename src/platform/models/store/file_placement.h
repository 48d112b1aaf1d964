// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/models/model_catalogue.h"
#include "platform/models/placed_model_file.h"
#include "platform/models/store/model_installer.h"

#include <QDateTime>

namespace velun {

/// Recognizes the file at `path` by its size and SHA-256 and copies it into the folder of its
/// model, together with files in the same folder that the model also needs. Installs the model if
/// that was all. The user's files are kept. See `ModelFilePlacer`.
PlacedModelFile placeModelFile(const ModelCatalogue& catalogue, const ModelInstaller& installer,
                               const QString& path, const std::function<void(double)>& progress,
                               const std::stop_token& stop);

/// Moves the unfinished copies below `root` that a killed program has left to the folder `target`,
/// which is made if it is needed. A copy that changed in the ten minutes before `now` may be that
/// of another program that is running.
void setAsideAbandonedCopies(const QString& root, const QString& target, const QDateTime& now);

}  // namespace velun
