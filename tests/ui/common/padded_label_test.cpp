// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/padded_label.h"

#include "support/suite.h"

using namespace velun;

class PaddedLabelTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void paddingOutlastsAChangeOfTheStyle() {
    PaddedLabel label("Text");
    const QSize bare = label.sizeHint();
    label.setPadding({5, 3, 7, 2});
    const QSize padded = label.sizeHint();
    QCOMPARE(padded, bare.grownBy({5, 3, 7, 2}));
    QEvent restyled(QEvent::StyleChange);
    QApplication::sendEvent(&label, &restyled);
    QCOMPARE(label.sizeHint(), padded);
  }
};

QTEST_MAIN(PaddedLabelTest)
#include "padded_label_test.moc"
