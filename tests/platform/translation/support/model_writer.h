// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/student/student_model_file.h"

#include <cstddef>
#include <string>
#include <vector>

namespace velun::test {

/// One array to be written, with its data as in the file.
struct WrittenItem {
  std::string name;
  ModelItem::Type type = ModelItem::Type::float32;
  std::vector<int> shape;
  std::vector<std::byte> data;
};

/// A model file of these arrays.
std::vector<std::byte> writeModel(const std::vector<WrittenItem>& items);

/// The arrays of a model file.
std::vector<WrittenItem> itemsOf(const StudentModelFile& file);

/// The same network with every 8-bit number replaced by its float value.
std::vector<std::byte> writeAsFloats(const StudentModelFile& file);

/// The same network without the precomputed scales of the inputs of its products.
std::vector<std::byte> writeWithoutInputScales(const StudentModelFile& file);

/// Writes a file for a test. Aborts when that fails.
void writeBytes(const QString& path, const std::vector<std::byte>& bytes);

}  // namespace velun::test
