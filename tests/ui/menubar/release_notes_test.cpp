// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menubar/release_notes.h"

#include "support/suite.h"
#include "ui/menubar/update_view.h"

#include <QTextBrowser>

using namespace velun;

class ReleaseNotesTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void textWithoutFrillsStaysAsItIs() {
    const QString notes =
        "<h2>1.3</h2><p>Quicker &amp; <b>calmer</b>:<ul><li>one<li>two</ul>a<br>b <code>c</code>";
    QCOMPARE(sanitizedHtml(notes), notes);
  }

  void frillsAreLeftOut_data() {
    QTest::addColumn<QString>("notes");
    QTest::addColumn<QString>("shown");
    QTest::newRow("attributes") << "<p style='color:red' onclick=x>a</P >"
                                << "<p>a</p>";
    QTest::newRow("pictures") << "a<img src='file:///etc/passwd'>b"
                              << "ab";
    QTest::newRow("links") << "<a href='https://example.org'>a</a>"
                           << "a";
    QTest::newRow("tables") << "<table><tr><td colspan=2000000000>a</td></tr></table>"
                            << "a";
    QTest::newRow("styles") << "<style>p { x }</style >a<script>b"
                            << "a";
    QTest::newRow("comments") << "a<!-- <b> -->c<!-- d"
                              << "ac";
    QTest::newRow("an end without a beginning") << "</b></ul>a"
                                                << "a";
    QTest::newRow("no tag at all") << "1 < 2 <<b>3</b"
                                   << "1 &lt; 2 &lt;<b>3&lt;/b";
  }
  void frillsAreLeftOut() {
    QFETCH(QString, notes);
    QFETCH(QString, shown);
    QCOMPARE(sanitizedHtml(notes), shown);
  }

  void whatIsTooDeepLosesItsTags() {
    const QString deep = QString("<b>").repeated(25) + "a" + QString("</b>").repeated(25);
    QCOMPARE(sanitizedHtml(deep), QString("<b>").repeated(20) + "a" + QString("</b>").repeated(20));
  }

  /// Each of these would keep the program busy for minutes, or take all memory, as it stands.
  void hostileNotesAreShown_data() {
    QTest::addColumn<QString>("begin");
    for (const char* begin : {"<table><tr><td>", "<div>", "<ul><li>", "<blockquote>", "<a", "<!--",
                              "<td colspan=2000000000>", "<ol><li><b><p>"}) {
      QTest::newRow(begin) << QString(begin);
    }
  }
  void hostileNotesAreShown() {
    QFETCH(QString, begin);
    UpdateView view([](const QUrl&) {}, [] {});
    const QString notes = "<p>first</p>" + begin.repeated(60'000);
    view.show(
        UpdateAvailable{.item = {"2", "2", notes, QUrl("https://example.org")}, .version = "1"});
    view.resize(400, 300);
    view.QWidget::show();
    QVERIFY(!view.grab().isNull());
    const auto* shown = view.findChild<QTextBrowser*>();
    QVERIFY(shown->isVisible() && shown->toPlainText().startsWith("first"));
  }
};

QTEST_MAIN(ReleaseNotesTest)
#include "release_notes_test.moc"
