// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/support/toy_models.h"

#include "platform/translation/support/model_writer.h"

#include <QFile>

namespace velun::test {

namespace {

QString inTree(const QString& name) {
  return QStringLiteral(VELUN_TOY_MODELS "/") + name;
}

}  // namespace

QString ToyVariant::name() const {
  const char* form = numbers == Numbers::floats     ? "floats"
                     : numbers == Numbers::integers ? "integers"
                                                    : "unscaled";
  return QStringLiteral("%1-%2-%3")
      .arg(pair, QLatin1String(form), QLatin1String(withShortlist ? "shortlist" : "all"));
}

QString ToyVariant::precision() const {
  if (numbers == Numbers::floats) return QStringLiteral("float32");
  return numbers == Numbers::integers ? QStringLiteral("int8shiftAlphaAll")
                                      : QStringLiteral("int8shiftAll");
}

std::vector<ToyVariant> toyVariants() {
  using Numbers = ToyVariant::Numbers;
  std::vector<ToyVariant> variants;
  for (const QString& pair : {QStringLiteral("enes"), QStringLiteral("enko")}) {
    for (const Numbers numbers :
         {Numbers::floats, Numbers::integers, Numbers::integersWithoutInputScales}) {
      for (const bool withShortlist : {true, false}) {
        variants.push_back({pair, numbers, withShortlist});
      }
    }
  }
  return variants;
}

StudentFiles filesOf(const ToyVariant& variant, const QTemporaryDir& folder) {
  StudentFiles files = toyFiles(variant.pair);
  if (!variant.withShortlist) files.shortlist.clear();
  if (variant.numbers == ToyVariant::Numbers::integers) return files;
  const StudentModelFile original = StudentModelFile::read(files.model);
  files.model = folder.filePath(variant.name() + QStringLiteral(".bin"));
  writeBytes(files.model, variant.numbers == ToyVariant::Numbers::floats
                              ? writeAsFloats(original)
                              : writeWithoutInputScales(original));
  return files;
}

StudentFiles toyFiles(const QString& pair) {
  const QString folder = inTree(pair);
  StudentFiles files;
  files.model = folder + QStringLiteral("/model.bin");
  files.shortlist = folder + QStringLiteral("/lex.bin");
  if (pair == QStringLiteral("enes")) {
    files.sourceVocabulary = folder + QStringLiteral("/vocab.spm");
  } else {
    files.sourceVocabulary = folder + QStringLiteral("/srcvocab.spm");
    files.targetVocabulary = folder + QStringLiteral("/trgvocab.spm");
  }
  return files;
}

QStringList toyLines(const QString& name) {
  QFile file(inTree(name));
  if (!file.open(QIODevice::ReadOnly)) qFatal("%s is missing", qPrintable(file.fileName()));
  QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
  lines.removeLast();
  return lines;
}

QStringList toySentences(const ToyVariant& variant) {
  QStringList lines = toyLines(QStringLiteral("sentences.en"));
  lines += toyLines(QStringLiteral("long.en"));
  // Random input produces activations for which exact sums differ from the reference engine's
  // saturating ones. Only floats can be compared then.
  if (variant.numbers == ToyVariant::Numbers::floats) {
    lines += toyLines(QStringLiteral("scrambled.en"));
    lines += toyLines(QStringLiteral("unknown.txt"));
  }
  return lines;
}

QString withoutOuterSpace(const QString& translation) {
  static constexpr QChar kZeroWidthSpace(0x200B);
  QStringView view(translation);
  const auto isSpace = [](QChar c) {
    return c.isSpace() || c == kZeroWidthSpace;
  };
  while (!view.isEmpty() && isSpace(view.front())) view = view.mid(1);
  while (!view.isEmpty() && isSpace(view.back())) view.chop(1);
  return view.toString();
}

}  // namespace velun::test
