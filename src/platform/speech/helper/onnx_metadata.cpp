// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/onnx_metadata.h"

#include "platform/foundation/protobuf_reader.h"

#include <QFile>
#include <stdexcept>

namespace velun {

namespace {

// Fields of the messages ModelProto and StringStringEntryProto (onnx.proto).
constexpr std::uint32_t kGraph = 7;
constexpr std::uint32_t kMetadata = 14;
constexpr std::uint32_t kKey = 1;
constexpr std::uint32_t kValue = 2;

/// Far above those of ModelProto, to refuse other files early.
constexpr std::uint32_t kMaxField = 1000;
constexpr std::size_t kMaxEntryBytes = 1 << 20;

[[noreturn]] void refuse(const char* why) {
  throw std::runtime_error(why);
}

QString toText(ProtobufReader::Bytes bytes) {
  return QString::fromUtf8(reinterpret_cast<const char*>(bytes.data()),
                           static_cast<qsizetype>(bytes.size()));
}

void readEntry(ProtobufReader::Bytes bytes, QHash<QString, QString>& metadata) {
  if (bytes.size() > kMaxEntryBytes) refuse("not an ONNX model");
  QString key;
  QString value;
  for (ProtobufReader entry(bytes); !entry.atEnd();) {
    const ProtobufReader::Field field = entry.next();
    if (field.number == kKey) key = toText(field.bytes);
    if (field.number == kValue) value = toText(field.bytes);
  }
  metadata.insert(key, value);
}

}  // namespace

QHash<QString, QString> readOnnxMetadata(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) refuse("the file cannot be read");
  // Mapped, because the graph, which is skipped, can have hundreds of megabytes.
  const uchar* content = file.map(0, file.size());
  if (!content) refuse(file.size() == 0 ? "not an ONNX model" : "the file cannot be read");
  ProtobufReader model(std::as_bytes(std::span(content, static_cast<std::size_t>(file.size()))));
  QHash<QString, QString> metadata;
  bool hasGraph = false;
  while (!model.atEnd()) {
    const ProtobufReader::Field field = model.next();
    if (field.number > kMaxField) refuse("not an ONNX model");
    if (field.number == kGraph) hasGraph = true;
    if (field.number == kMetadata) readEntry(field.bytes, metadata);
  }
  if (!hasGraph) refuse("not an ONNX model");
  return metadata;
}

}  // namespace velun
