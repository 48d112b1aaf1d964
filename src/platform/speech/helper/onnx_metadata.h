// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QString>

namespace velun {

/// The metadata of an ONNX model file, by key. Reads only the top level and skips the graph. Throws
/// `std::runtime_error` when the file is truncated or not an ONNX model.
QHash<QString, QString> readOnnxMetadata(const QString& path);

}  // namespace velun
