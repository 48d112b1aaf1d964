// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <QString>
#include <QStringList>
#include <stop_token>

namespace velun {

/// What became of a file that the user has added to the models.
struct PlacedModelFile {
  QString model;        ///< the id of the model that it belongs to
  QStringList missing;  ///< other files that the model still needs; empty if it is installed now

  bool operator==(const PlacedModelFile&) const = default;
};

/// Adds the file at `path`, and files beside it that the same model needs, to the models. Calls
/// `progress` with the share that is done, 0…1. Blocks; not on the main thread, but `progress` is
/// called on the same thread. Throws `Failure` for a file that no model has or that cannot be
/// copied, or `Cancelled`.
using ModelFilePlacer = std::function<PlacedModelFile(
    const QString& path, const std::function<void(double)>& progress, const std::stop_token& stop)>;

}  // namespace velun
