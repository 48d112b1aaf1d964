// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QTest>

namespace velun::test {

/// Returns `grab`'s picture once ten in a row are equal, that is, once layouts and animations have
/// ended; after one second the last picture, because a spinner never ends.
template <class Grab>
QImage steadyPicture(Grab grab) {
  QImage picture;
  int repetitions = 0;
  (void)QTest::qWaitFor(
      [&] {
        const QImage next = grab();
        repetitions = next == picture ? repetitions + 1 : 0;
        picture = next;
        return repetitions >= 10;
      },
      1'000);
  return picture;
}

}  // namespace velun::test
