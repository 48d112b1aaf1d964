// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/file_mutations.h"

#include <utility>

namespace velun::test {

namespace {

const std::vector<QByteArray>& trippingStones() {
  static const std::vector<QByteArray> stones{"null",
                                              "true",
                                              "-1",
                                              "1e999",
                                              "99999999999999999999",
                                              "0.1",
                                              "\"\"",
                                              "[]",
                                              "{}",
                                              "[[[[",
                                              "]",
                                              "}",
                                              ",",
                                              ":",
                                              "\"",
                                              "\\",
                                              "\\u0000",
                                              "\\ud800",
                                              "\\u",
                                              "\n",
                                              "\r",
                                              "`",
                                              "> ",
                                              "# ",
                                              "\xEF\xBB\xBF",
                                              "\xFF",
                                              "\xED\xA0\x80",
                                              "\xF0\x9F\x98\x80",
                                              "\"version\":",
                                              "\"lines\":",
                                              "\"id\":",
                                              "2025-13-40T99:99:99Z",
                                              "0001-01-01T00:00:00Z",
                                              "/*",
                                              QByteArray(1, '\0'),
                                              QByteArray(2000, '['),
                                              QByteArray(3000, 'x')};
  return stones;
}

}  // namespace

FileMutations::FileMutations(std::vector<QByteArray> originals, unsigned seed)
    : originals_(std::move(originals)), random_(seed) {}

QByteArray FileMutations::next() {
  QByteArray bytes = originals_[below(originals_.size())];
  // Half of the files have a single change, so that many can still be read.
  const std::size_t count = below(2) == 0 ? 1 : 2 + below(7);
  for (std::size_t changes = count; changes > 0; --changes) change(bytes);
  return bytes;
}

// Not std::uniform_int_distribution, whose numbers differ between standard libraries.
std::size_t FileMutations::below(std::size_t limit) {
  return random_() % limit;
}

void FileMutations::change(QByteArray& bytes) {
  const auto at = static_cast<qsizetype>(below(static_cast<std::size_t>(bytes.size()) + 1));
  const bool isAtEnd = at == bytes.size();
  switch (below(8)) {
    case 0:
      if (!isAtEnd) bytes[at] = static_cast<char>(bytes[at] ^ (1 << below(8)));
      break;
    case 1:
      if (!isAtEnd) bytes[at] = static_cast<char>(below(256));
      break;
    case 2:
      bytes.remove(at, 1 + static_cast<qsizetype>(below(32)));
      break;
    case 3:
      bytes.insert(at, trippingStones()[below(trippingStones().size())]);
      break;
    case 4: {
      const QByteArray& stone = trippingStones()[below(trippingStones().size())];
      bytes.replace(at, stone.size(), stone);
      break;
    }
    case 5:
      bytes.insert(at, pieceOf(bytes));
      break;
    case 6:
      bytes.insert(at, pieceOf(originals_[below(originals_.size())]));
      break;
    default:
      // Rarely, because otherwise nearly all files would be truncated.
      if (below(4) == 0) bytes.truncate(at);
      break;
  }
}

QByteArray FileMutations::pieceOf(const QByteArray& bytes) {
  const auto from = static_cast<qsizetype>(below(static_cast<std::size_t>(bytes.size()) + 1));
  return bytes.mid(from, static_cast<qsizetype>(below(200)));
}

}  // namespace velun::test
