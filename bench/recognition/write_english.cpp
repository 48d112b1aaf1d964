// SPDX-License-Identifier: GPL-3.0-or-later
// Reads lines of recognized English words, with case and marks, and writes them as captions; says
// on the error stream how long a word took. Used by tools/punctuation/numbers.py.
#include "platform/speech/english/english_text.h"

#include <algorithm>
#include <chrono>
#include <QTextStream>

using namespace velun;

int main() {
  QTextStream input(stdin);
  QTextStream output(stdout);
  std::chrono::steady_clock::duration time{};
  std::size_t count = 0;
  QString line;
  while (input.readLineInto(&line)) {
    const CaptionWords words = captionWords(line);
    count += words.size();
    const auto begin = std::chrono::steady_clock::now();
    const CaptionWords written = writeEnglish(words, {});
    time += std::chrono::steady_clock::now() - begin;
    output << joinedText(written) << '\n';
  }
  const double microseconds = std::chrono::duration<double, std::micro>(time).count();
  QTextStream(stderr) << count << " words, "
                      << microseconds / static_cast<double>(std::max<std::size_t>(count, 1))
                      << " microseconds per word\n";
}
