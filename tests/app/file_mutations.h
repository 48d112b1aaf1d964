// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <random>
#include <vector>

namespace velun::test {

/// Creates damaged and hostile variants of files, reproducible by the seed.
class FileMutations {
 public:
  /// Requires at least one original.
  FileMutations(std::vector<QByteArray> originals, unsigned seed);

  /// A copy of a random original with one to eight changes: bytes changed, inserted, removed or
  /// copied, pieces of another original, and numbers and words that often break readers.
  QByteArray next();

 private:
  std::size_t below(std::size_t limit);
  void change(QByteArray& bytes);
  QByteArray pieceOf(const QByteArray& bytes);

  std::vector<QByteArray> originals_;
  std::mt19937 random_;
};

}  // namespace velun::test
