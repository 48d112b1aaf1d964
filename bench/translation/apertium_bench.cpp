// SPDX-License-Identifier: GPL-3.0-or-later
// The speed of the built-in translator from English to Spanish. With --translate it translates its
// standard input line by line instead.
#include "measure.h"
#include "platform/translation/linux/apertium/apertium_backend.h"

#include <cstdio>
#include <iostream>
#include <QCoreApplication>
#include <string>

using namespace velun;

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  ApertiumBackend backend;
  const auto translator = backend.makeTranslator({QStringLiteral("en"), QStringLiteral("es")});
  if (application.arguments().contains(QStringLiteral("--translate"))) {
    std::string line;
    while (std::getline(std::cin, line)) {
      const QString translation = translator->translate(QString::fromStdString(line), {});
      std::printf("%s\n", qUtf8Printable(translation));
    }
    return 0;
  }
  const QString sentence = QStringLiteral(
      "The people who live in the old town were waiting for the first train of the morning when "
      "the rain began.");
  translator->load();
  translator->translate(sentence, {});
  const double taken = bench::medianMilliseconds(200, [&] { translator->translate(sentence, {}); });
  bench::report("apertium_ms_per_sentence", taken, "ms");
  return 0;
}
