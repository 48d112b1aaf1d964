// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/linux/helper/onnx_metadata.h"

#include <cstdint>
#include <QFile>
#include <stdexcept>

namespace velun {

namespace {

// The fields of a ModelProto that matter, and the ways in which fields are written.
constexpr std::uint64_t kGraph = 7;
constexpr std::uint64_t kMetadata = 14;
constexpr std::uint64_t kKey = 1;
constexpr std::uint64_t kValue = 2;
constexpr std::uint64_t kHighestField = 1000;
constexpr qint64 kLargestNote = 1 << 20;

[[noreturn]] void refuse(const char* why) {
  throw std::runtime_error(why);
}

std::uint64_t readNumber(QIODevice& device) {
  std::uint64_t value = 0;
  for (int shift = 0; shift < 64; shift += 7) {
    char byte = 0;
    if (!device.getChar(&byte)) refuse("the file is cut off");
    value |= static_cast<std::uint64_t>(byte & 0x7f) << shift;
    if (!(byte & 0x80)) return value;
  }
  refuse("not an ONNX model");
}

/// The length of a field, which is checked to end by `limit`, where it begins.
qint64 checkedLength(const QIODevice& device, std::uint64_t length, qint64 limit) {
  const qint64 rest = limit - device.pos();
  if (rest < 0 || length > static_cast<std::uint64_t>(rest)) refuse("the file is cut off");
  return static_cast<qint64>(length);
}

/// Reads the length of a field and leaves the device where the field begins.
qint64 readLength(QIODevice& device, qint64 limit) {
  const std::uint64_t length = readNumber(device);
  return checkedLength(device, length, limit);
}

void skip(QIODevice& device, std::uint64_t length, qint64 limit) {
  device.seek(device.pos() + checkedLength(device, length, limit));
}

void readNote(QIODevice& device, qint64 end, QHash<QString, QString>& notes) {
  if (end - device.pos() > kLargestNote) refuse("not an ONNX model");
  QString key;
  QString value;
  while (device.pos() < end) {
    const std::uint64_t tag = readNumber(device);
    if ((tag & 7) != 2) refuse("not an ONNX model");
    const qint64 size = readLength(device, end);
    const QString text = QString::fromUtf8(device.read(size));
    if (tag >> 3 == kKey) key = text;
    if (tag >> 3 == kValue) value = text;
  }
  notes.insert(key, value);
}

}  // namespace

QHash<QString, QString> readOnnxMetadata(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) refuse("the file cannot be read");
  QHash<QString, QString> notes;
  bool hasGraph = false;
  while (file.pos() < file.size()) {
    const std::uint64_t tag = readNumber(file);
    const std::uint64_t field = tag >> 3;
    if (field == 0 || field > kHighestField) refuse("not an ONNX model");
    switch (tag & 7) {
      case 0:
        readNumber(file);
        break;
      case 1:
        skip(file, 8, file.size());
        break;
      case 5:
        skip(file, 4, file.size());
        break;
      case 2: {
        const qint64 length = readLength(file, file.size());
        const qint64 end = file.pos() + length;
        if (field == kGraph) hasGraph = true;
        if (field == kMetadata) readNote(file, end, notes);
        file.seek(end);
        break;
      }
      default:
        refuse("not an ONNX model");
    }
  }
  if (!hasGraph) refuse("not an ONNX model");
  return notes;
}

}  // namespace velun
