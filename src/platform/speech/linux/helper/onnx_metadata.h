// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QString>

namespace velun {

/// The notes that an ONNX model file carries, by key. Reads the file's top level only; the network
/// itself is skipped. Throws `std::runtime_error` when the file is cut, or is not such a model.
QHash<QString, QString> readOnnxMetadata(const QString& path);

}  // namespace velun
