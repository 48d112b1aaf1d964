// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/session_row_delegate.h"

#include "support/suite.h"
#include "ui/library/session_list_model.h"

#include <QImage>
#include <QPainter>
#include <QStandardItemModel>

using namespace velun;

class SessionRowDelegateTest final : public test::Suite {
  Q_OBJECT

 private:
  /// With a text in the role `extra`, if that is not 0.
  static QImage pictureOf(const QString& title, int extra = 0) {
    QStandardItemModel rows;
    rows.appendRow(new QStandardItem(title));
    if (extra) rows.item(0)->setData("Words", extra);
    const SessionRowDelegate delegate;
    QStyleOptionViewItem option;
    option.rect = QRect(QPoint(), QSize(200, 60));
    QImage picture(option.rect.size(), QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    delegate.paint(&painter, option, rows.index(0, 0));
    return picture;
  }

 private Q_SLOTS:
  void drawsAMultilineTitleOnOneLine() {
    QVERIFY(pictureOf("One Two") != pictureOf(""));
    QCOMPARE(pictureOf("One\nTwo"), pictureOf("One Two"));
  }

  void drawsTheTimesAndTheFirstWords() {
    for (const int role : {SessionListModel::timesRole, SessionListModel::previewRole}) {
      QVERIFY(pictureOf("One", role) != pictureOf("One"));
    }
  }
};

QTEST_MAIN(SessionRowDelegateTest)
#include "session_row_delegate_test.moc"
