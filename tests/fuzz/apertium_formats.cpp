// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/linux/apertium/apertium_mode.h"
#include "platform/translation/linux/apertium/apertium_stream.h"
#include "require.h"

using namespace velun;
using fuzz::require;

namespace {

void checkPipeline(const QString& text) {
  const auto stages = parseApertiumPipeline(text);
  if (!stages) return;
  require(!stages->empty(), "a pipeline has a stage");
  for (const QStringList& stage : *stages) {
    require(stage.size() >= 2 && stage[1] == "-z", "a stage answers text by text");
    const QString program = stage[0].section(u'/', -1);
    require(program.contains("-proc") || program.startsWith("apertium-"), "a stage is known");
  }
}

void checkName(const QString& text) {
  const auto name = parseApertiumModeName(text);
  require(!name || !(name->pair.source == name->pair.target), "a mode translates");
}

/// The response of a pipeline that changes nothing.
void checkWayAndBack(const QString& text) {
  const QByteArray request = apertium_stream::encode(text);
  require(request.endsWith('\0') && request.count('\0') == 1, "a request is one text");
  const auto back = apertium_stream::decode(request.chopped(1));
  QString expected = text;
  expected = expected.remove(QChar(0)).trimmed();
  while (expected.contains("  ")) expected.replace("  ", " ");
  require(back == expected, "a text comes through unchanged");
}

}  // namespace

/// Mode files, their names and responses of any bytes are parsed or rejected; every text is kept.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  const QString text = QString::fromUtf8(bytes);
  checkPipeline(text);
  checkName(text);
  if (const auto answer = apertium_stream::decode(bytes)) {
    require(*answer == answer->trimmed(), "an answer is trimmed");
  }
  checkWayAndBack(text);
  return 0;
}
