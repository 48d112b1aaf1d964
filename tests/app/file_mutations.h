// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <random>
#include <vector>

namespace velun::test {

/// Makes damaged and hostile variants of files: the same ones for the same seed.
class FileMutations {
 public:
  /// `originals` are what is varied; there is at least one.
  FileMutations(std::vector<QByteArray> originals, unsigned seed);

  /// One to eight changes of one of the originals: bytes turned, put in, taken out or moved, pieces
  /// of another original, numbers and words that readers trip over.
  QByteArray next();

 private:
  std::size_t below(std::size_t limit);
  void change(QByteArray& bytes);
  QByteArray pieceOf(const QByteArray& bytes);

  std::vector<QByteArray> originals_;
  std::mt19937 random_;
};

}  // namespace velun::test
