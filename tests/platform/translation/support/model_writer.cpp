// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/support/model_writer.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <QFile>

namespace velun::test {

namespace {

constexpr std::size_t kBlock = 256;

using Bytes = std::vector<std::byte>;

template <class T>
void append(Bytes& bytes, T value) {
  const auto* raw = reinterpret_cast<const std::byte*>(&value);
  bytes.insert(bytes.end(), raw, raw + sizeof value);
}

std::uint64_t codeOf(ModelItem::Type type) {
  switch (type) {
    case ModelItem::Type::float32:
      return 0x0404;
    case ModelItem::Type::int8:
      return 0x4101;
    case ModelItem::Type::characters:
      return 0x0101;
  }
  return 0;
}

// Arrays are padded to whole blocks, the description is not.
std::size_t storedSize(const WrittenItem& item) {
  if (item.type == ModelItem::Type::characters) return item.data.size();
  return (item.data.size() + kBlock - 1) / kBlock * kBlock;
}

bool isTable(const std::string& name) {
  return name.find("Wemb") != std::string::npos;
}

WrittenItem asFloats(const WrittenItem& item) {
  WrittenItem result{item.name, ModelItem::Type::float32, item.shape, {}};
  const auto rows = static_cast<std::size_t>(item.shape[0]);
  const auto columns = static_cast<std::size_t>(item.shape[1]);
  float multiplier = 1;
  std::memcpy(&multiplier, item.data.data() + rows * columns, sizeof multiplier);
  const float unit = 1.0F / multiplier;
  for (std::size_t row = 0; row < rows; ++row) {
    for (std::size_t column = 0; column < columns; ++column) {
      const std::size_t at = isTable(item.name) ? row * columns + column : column * rows + row;
      append(result.data, static_cast<float>(static_cast<std::int8_t>(item.data[at])) * unit);
    }
  }
  return result;
}

}  // namespace

Bytes writeModel(const std::vector<WrittenItem>& items) {
  Bytes bytes;
  append<std::uint64_t>(bytes, 1);
  append<std::uint64_t>(bytes, items.size());
  for (const WrittenItem& item : items) {
    append<std::uint64_t>(bytes, item.name.size() + 1);
    append<std::uint64_t>(bytes, codeOf(item.type));
    append<std::uint64_t>(bytes, item.shape.size());
    append<std::uint64_t>(bytes, storedSize(item));
  }
  for (const WrittenItem& item : items) {
    const auto* name = reinterpret_cast<const std::byte*>(item.name.c_str());
    bytes.insert(bytes.end(), name, name + item.name.size() + 1);
  }
  for (const WrittenItem& item : items) {
    for (const int size : item.shape) append<std::int32_t>(bytes, size);
  }
  const std::size_t position = bytes.size() + sizeof(std::uint64_t);
  const std::size_t filler = (position / kBlock + 1) * kBlock - position;
  append<std::uint64_t>(bytes, filler);
  bytes.resize(bytes.size() + filler);
  for (const WrittenItem& item : items) {
    bytes.insert(bytes.end(), item.data.begin(), item.data.end());
    bytes.resize(bytes.size() + storedSize(item) - item.data.size());
  }
  return bytes;
}

std::vector<WrittenItem> itemsOf(const StudentModelFile& file) {
  std::vector<WrittenItem> items;
  for (const auto& [name, item] : file.items()) {
    items.push_back({name, item.type, item.shape, Bytes(item.data.begin(), item.data.end())});
  }
  return items;
}

Bytes writeAsFloats(const StudentModelFile& file) {
  std::vector<WrittenItem> items = itemsOf(file);
  std::erase_if(items, [](const WrittenItem& item) { return item.name.ends_with("_QuantMultA"); });
  for (WrittenItem& item : items) {
    if (item.type == ModelItem::Type::int8) item = asFloats(item);
  }
  return writeModel(items);
}

Bytes writeWithoutInputScales(const StudentModelFile& file) {
  std::vector<WrittenItem> items = itemsOf(file);
  std::erase_if(items, [](const WrittenItem& item) { return item.name.ends_with("_QuantMultA"); });
  return writeModel(items);
}

void writeBytes(const QString& path, const Bytes& bytes) {
  QFile file(path);
  const auto size = static_cast<qint64>(bytes.size());
  if (!file.open(QIODevice::WriteOnly) ||
      file.write(reinterpret_cast<const char*>(bytes.data()), size) != size) {
    qFatal("%s cannot be written", qPrintable(path));
  }
}

}  // namespace velun::test
