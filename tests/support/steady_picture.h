// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QTest>

namespace velun::test {

/// What `grab` returns once ten pictures in a row are the same, so that layouts and animations have
/// ended; the last picture after a second of movement, because a spinner never ends.
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
