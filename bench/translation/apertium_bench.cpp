// SPDX-License-Identifier: GPL-3.0-or-later
// How fast the built-in translator is, English to Spanish. With --translate it translates its
// input line by line instead.
#include "platform/translation/linux/apertium/apertium_backend.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <QCoreApplication>
#include <string>
#include <vector>

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
  std::vector<double> times;
  for (int i = 0; i < 200; ++i) {
    const auto start = std::chrono::steady_clock::now();
    translator->translate(sentence, {});
    const std::chrono::duration<double, std::milli> taken =
        std::chrono::steady_clock::now() - start;
    times.push_back(taken.count());
  }
  std::ranges::sort(times);
  std::printf("apertium_ms_per_sentence %.2f ms\n", times[times.size() / 2]);
  return 0;
}
