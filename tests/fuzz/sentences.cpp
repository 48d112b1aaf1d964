// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/sentences.h"

#include "platform/translation/student/text_splitter.h"
#include "require.h"

using namespace velun;
using fuzz::require;

namespace {

QString withoutBlanks(QString text) {
  return text.removeIf([](QChar c) { return c.isSpace(); });
}

}  // namespace

/// The sentences of any text join to the text.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  constexpr qsizetype kMaxForModel = 12;
  const QString text =
      QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  for (const char* locale : {"en_US", "ko_KR", "ja_JP", "zz"}) {
    const QStringList cut = sentences(text, locale);
    require(cut.join(QString()) == text, "sentences joined are the text again");
    require(!cut.contains(QString()), "no sentence is empty");
  }
  const auto fits = [](const QString& piece) {
    return piece.size() <= kMaxForModel;
  };
  for (const char* language : {"en", "ko"}) {
    const QStringList pieces = splitForModel(text, language, fits);
    require(withoutBlanks(pieces.join(QString())) == withoutBlanks(text),
            "pieces for a model lose nothing");
  }
  return 0;
}
