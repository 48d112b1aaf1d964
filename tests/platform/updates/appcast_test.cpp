// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/updates/appcast.h"

#include "platform/foundation/failure.h"
#include "support/suite.h"

using namespace velun;

namespace {

QByteArray feed(const QByteArray& items) {
  return R"(<?xml version="1.0" encoding="utf-8"?>
<rss version="2.0" xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle">
<channel><title>Velun</title>)" +
         items + "</channel></rss>";
}

QByteArray item(const QByteArray& inside) {
  return "<item><link>https://example.org/release</link>" + inside + "</item>";
}

}  // namespace

class AppcastTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void readsEveryFieldOfAnItem() {
    const auto items = readAppcast(
        feed("<item><title>1.2</title><link>https://example.org/1.2</link>"
             "<sparkle:version>120</sparkle:version>"
             "<sparkle:shortVersionString>1.2</sparkle:shortVersionString>"
             "<description><![CDATA[<p>Quicker &amp; calmer</p>]]></description></item>"));
    QCOMPARE(items.size(), std::size_t(1));
    QCOMPARE(items[0].version, QString("120"));
    QCOMPARE(items[0].shortVersion, QString("1.2"));
    QCOMPARE(items[0].notes, QString("<p>Quicker &amp; calmer</p>"));
    QCOMPARE(items[0].page, QUrl("https://example.org/1.2"));
  }

  void readsTheVersionOfTheEnclosure() {
    const auto items =
        readAppcast(feed(item("<enclosure url=\"https://example.org/v.deb\" sparkle:version=\"7\" "
                              "sparkle:shortVersionString=\"0.7\"/>")));
    QCOMPARE(items.at(0).version, QString("7"));
    QCOMPARE(items.at(0).shortVersion, QString("0.7"));
  }

  void notesPageReplacesAMissingPage() {
    const auto items = readAppcast(
        feed("<item><sparkle:version>2</sparkle:version>"
             "<sparkle:releaseNotesLink>https://example.org/n</sparkle:releaseNotesLink></item>"));
    QCOMPARE(items.at(0).page, QUrl("https://example.org/n"));
    QCOMPARE(items.at(0).shortVersion, QString("2"));
  }

  void skipsUnsuitableItems_data() {
    QTest::addColumn<QByteArray>("item");
    QTest::newRow("no version") << item("<title>x</title>");
    QTest::newRow("another system")
        << item("<enclosure sparkle:version=\"2\" sparkle:os=\"windows\"/>");
    QTest::newRow("a channel") << item(
        "<sparkle:version>2</sparkle:version><sparkle:channel>beta</sparkle:channel>");
    QTest::newRow("no page") << QByteArray("<item><sparkle:version>2</sparkle:version></item>");
    QTest::newRow("a page that is none") << QByteArray(
        "<item><link>file:///etc/passwd</link>"
        "<sparkle:version>2</sparkle:version></item>");
  }
  void skipsUnsuitableItems() {
    QFETCH(QByteArray, item);
    QVERIFY(readAppcast(feed(item)).empty());
  }

  void readsDeeplyNestedNotes() {
    constexpr int kDepth = 100'000;
    const QByteArray notes =
        QByteArray("<b>").repeated(kDepth) + "deep" + QByteArray("</b>").repeated(kDepth);
    const auto items = readAppcast(
        feed(item("<sparkle:version>2</sparkle:version><description>" + notes + "</description>")));
    QCOMPARE(items.at(0).notes, QString("deep"));
  }

  void skipsTooLongVersions() {
    const QByteArray longest(100, '1');
    const auto items =
        readAppcast(feed(item("<sparkle:version>" + longest + "</sparkle:version>") +
                         item("<sparkle:version>1" + longest + "</sparkle:version>")));
    QCOMPARE(items.size(), std::size_t(1));
    QCOMPARE(items[0].version, QString(longest));
  }

  void rejectsOtherFiles_data() {
    QTest::addColumn<QByteArray>("xml");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("a web page") << QByteArray("<html><body>Not found</body></html>");
    QTest::newRow("cut off") << feed(item("<sparkle:version>2</sparkle:version>")).chopped(20);
    QTest::newRow("no channel") << QByteArray("<rss version=\"2.0\"/>");
    QTest::newRow("entities without end") << QByteArray(
        "<!DOCTYPE r [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;\">"
        "<!ENTITY c \"&b;&b;&b;&b;&b;&b;\"><!ENTITY d \"&c;&c;&c;&c;&c;&c;\">"
        "<!ENTITY e \"&d;&d;&d;&d;&d;&d;\">]>"
        "<rss><channel><item><link>&e;</link></item></channel>"
        "</rss>");
  }
  void rejectsOtherFiles() {
    QFETCH(QByteArray, xml);
    QVERIFY_EXCEPTION_THROWN(readAppcast(xml), Failure);
  }

  void offersTheNewestRelease() {
    const auto items = readAppcast(feed(item("<sparkle:version>1.9</sparkle:version>") +
                                        item("<sparkle:version>1.10</sparkle:version>") +
                                        item("<sparkle:version>1.2</sparkle:version>")));
    QCOMPARE(newestAfter("1.2", items)->version, QString("1.10"));
    QVERIFY(!newestAfter("1.10", items));
    QVERIFY(!newestAfter("2.0b1", items));
    QVERIFY(!newestAfter("1.0", {}));
  }
};

QTEST_GUILESS_MAIN(AppcastTest)
#include "appcast_test.moc"
