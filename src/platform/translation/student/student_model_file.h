// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <QString>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velun {

/// One named array of a model file. `data` points into the file's bytes.
struct ModelItem {
  enum class Type {
    float32,
    int8,        ///< `elements()` signed bytes, then the float multiplier that made them.
    characters,  ///< Text, one byte an element.
  };

  Type type = Type::float32;
  std::vector<int> shape;  ///< Each at least 1.
  std::span<const std::byte> data;

  std::size_t elements() const;
  int rows() const { return shape.front(); }
  int columns() const { return shape.back(); }
};

/// The arrays of a translation model. The file is read into memory and checked: every item is
/// inside of it and has the length of its shape. Items stay valid while this object or the one it
/// was moved to exists.
class StudentModelFile {
 public:
  /// Throws `ModelFormatError`.
  explicit StudentModelFile(std::vector<std::byte> bytes);

  StudentModelFile(StudentModelFile&&) = default;
  StudentModelFile& operator=(StudentModelFile&&) = default;

  /// Throws `ModelFormatError`, and `FileError` when the file cannot be read.
  static StudentModelFile read(const QString& path);

  /// Null when there is no such item.
  const ModelItem* find(std::string_view name) const;

  /// Throws `ModelFormatError` when there is no such item.
  const ModelItem& at(std::string_view name) const;

  const std::map<std::string, ModelItem, std::less<>>& items() const { return items_; }

  /// The stored description of the network, in lines of "key: value".
  std::string_view configuration() const;

 private:
  std::vector<std::byte> bytes_;
  std::map<std::string, ModelItem, std::less<>> items_;
};

/// Reads a whole file. Throws `FileError` when it cannot be read.
std::vector<std::byte> readModelBytes(const QString& path);

}  // namespace velun
