// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/student/student_model_file.h"

#include "platform/foundation/file_descriptor.h"
#include "platform/foundation/file_error.h"
#include "platform/translation/student/byte_reader.h"

#include <cerrno>
#include <fcntl.h>
#include <QFile>
#include <sys/stat.h>

namespace velun {

namespace {

constexpr std::uint64_t kVersion = 1;
constexpr std::string_view kConfigurationName = "special:model.yml";

// Far above the values of any model. They prevent a hostile header from allocating much memory.
constexpr std::uint64_t kMaxItems = 1 << 16;
constexpr std::uint64_t kMaxNameLength = 1 << 10;
constexpr std::uint64_t kMaxDimensions = 4;

struct ItemHead {
  std::uint64_t nameLength;  // with the final NUL
  std::uint64_t type;
  std::uint64_t dimensions;
  std::uint64_t dataLength;  // as stored, with padding to a multiple of 256
};

ModelItem::Type parseType(std::uint64_t code) {
  switch (code) {
    case 0x0404:
      return ModelItem::Type::float32;
    case 0x4101:
      return ModelItem::Type::int8;
    case 0x0101:
      return ModelItem::Type::characters;
    default:
      throw ModelFormatError::unsupported("number format " + std::to_string(code));
  }
}

std::uint64_t bytesNeeded(const ModelItem& item) {
  const std::uint64_t elements = item.elements();
  switch (item.type) {
    case ModelItem::Type::float32:
      return elements * sizeof(float);
    case ModelItem::Type::int8:
      return elements + sizeof(float);
    case ModelItem::Type::characters:
      return elements;
  }
  return 0;
}

std::vector<int> readShape(ByteReader& reader, std::uint64_t dimensions) {
  std::vector<int> shape;
  constexpr std::uint64_t kMaxElements = 1ULL << 40;
  std::uint64_t elements = 1;
  for (std::uint64_t i = 0; i < dimensions; ++i) {
    const auto size = reader.value<std::int32_t>();
    if (size < 1) throw ModelFormatError::damaged("an array without elements");
    if (elements > kMaxElements / static_cast<std::uint64_t>(size)) {
      throw ModelFormatError::damaged("an impossibly large array");
    }
    elements *= static_cast<std::uint64_t>(size);
    shape.push_back(size);
  }
  if (shape.empty()) throw ModelFormatError::damaged("an array without a shape");
  return shape;
}

std::vector<ItemHead> readHeads(ByteReader& reader) {
  if (reader.value<std::uint64_t>() != kVersion) {
    throw ModelFormatError::unsupported("not a model file of version 1");
  }
  const auto count = reader.value<std::uint64_t>();
  if (count > kMaxItems) throw ModelFormatError::damaged("too many arrays");
  std::vector<ItemHead> heads;
  for (std::uint64_t i = 0; i < count; ++i) {
    ItemHead head{};
    head.nameLength = reader.value<std::uint64_t>();
    head.type = reader.value<std::uint64_t>();
    head.dimensions = reader.value<std::uint64_t>();
    head.dataLength = reader.value<std::uint64_t>();
    if (head.nameLength < 1 || head.nameLength > kMaxNameLength) {
      throw ModelFormatError::damaged("a name of impossible length");
    }
    if (head.dimensions > kMaxDimensions) {
      throw ModelFormatError::damaged("an array of too many dimensions");
    }
    heads.push_back(head);
  }
  return heads;
}

std::string readName(ByteReader& reader, std::uint64_t length) {
  const auto bytes = reader.take(length);
  std::string name(reinterpret_cast<const char*>(bytes.data()), bytes.size() - 1);
  if (bytes.back() != std::byte{0} || name.find('\0') != std::string::npos) {
    throw ModelFormatError::damaged("a name without an end");
  }
  return name;
}

}  // namespace

std::size_t ModelItem::elements() const {
  std::size_t count = 1;
  for (const int size : shape) count *= static_cast<std::size_t>(size);
  return count;
}

StudentModelFile::StudentModelFile(std::vector<std::byte> bytes) : bytes_(std::move(bytes)) {
  ByteReader reader(bytes_);
  const std::vector<ItemHead> heads = readHeads(reader);
  std::vector<std::string> names;
  names.reserve(heads.size());
  for (const ItemHead& head : heads) names.push_back(readName(reader, head.nameLength));
  std::vector<ModelItem> items;
  for (const ItemHead& head : heads) {
    ModelItem& item = items.emplace_back();
    item.type = parseType(head.type);
    item.shape = readShape(reader, head.dimensions);
  }
  // The stored length of the padding must be used: the writer adds a whole block when no padding
  // would be needed.
  reader.take(reader.value<std::uint64_t>());
  for (std::size_t i = 0; i < items.size(); ++i) {
    items[i].data = reader.take(heads[i].dataLength);
    const std::uint64_t needed = bytesNeeded(items[i]);
    if (items[i].data.size() < needed) {
      throw ModelFormatError::damaged("the array " + names[i] + " is shorter than its shape");
    }
    items[i].data = items[i].data.first(static_cast<std::size_t>(needed));
    if (!items_.emplace(names[i], std::move(items[i])).second) {
      throw ModelFormatError::damaged("the array " + names[i] + " appears twice");
    }
  }
}

StudentModelFile StudentModelFile::read(const QString& path) {
  return StudentModelFile(readModelBytes(path));
}

const ModelItem* StudentModelFile::find(std::string_view name) const {
  const auto found = items_.find(name);
  return found == items_.end() ? nullptr : &found->second;
}

const ModelItem& StudentModelFile::at(std::string_view name) const {
  if (const ModelItem* item = find(name)) return *item;
  throw ModelFormatError::damaged("the array " + std::string(name) + " is missing");
}

std::string_view StudentModelFile::configuration() const {
  const ModelItem& item = at(kConfigurationName);
  const std::string_view text(reinterpret_cast<const char*>(item.data.data()), item.data.size());
  return text.substr(0, text.find('\0'));
}

std::vector<std::byte> readModelBytes(const QString& path) {
  const auto refuse = [&path](int code) {
    throw FileError(FileError::Operation::read, code, path);
  };
  const FileDescriptor file(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC));
  struct stat status {};
  if (!file.isOpen() || ::fstat(file.number(), &status) != 0) refuse(errno);
  if (!S_ISREG(status.st_mode)) refuse(EINVAL);
  std::vector<std::byte> bytes(static_cast<std::size_t>(status.st_size));
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t count = ::read(file.number(), bytes.data() + done, bytes.size() - done);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) refuse(errno);
    if (count == 0) throw ModelFormatError::damaged("the file became shorter");
    done += static_cast<std::size_t>(count);
  }
  return bytes;
}

}  // namespace velun
