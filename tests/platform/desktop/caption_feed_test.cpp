// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/dbus_caption_feed.h"
#include "support/private_bus.h"
#include "support/settle.h"
#include "support/suite.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QSignalSpy>

using namespace velun;

namespace {

constexpr auto kPath = "/app/velun/Velun/Captions";
constexpr auto kInterface = "app.velun.Velun.Captions";

/// Keeps every signal that it is connected to.
class Listener final : public QObject {
  Q_OBJECT

 public:
  std::vector<QDBusMessage> heard;

 public Q_SLOTS:
  void received(const QDBusMessage& message) { heard.push_back(message); }
};

}  // namespace

class CaptionFeedTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    Suite::init();
    bus = std::make_unique<test::PrivateBus>();
    QDBusConnection own = bus->connect();
    name = own.baseService();
    feed = std::make_unique<DBusCaptionFeed>(own);
    other = std::make_unique<QDBusConnection>(bus->connect());
    listener = std::make_unique<Listener>();
    QVERIFY(other->connect(name, kPath, kInterface, QString(), listener.get(),
                           SLOT(received(QDBusMessage))));
  }
  void cleanup() {
    listener.reset();
    feed.reset();
    other.reset();
    bus.reset();
  }

  void aClosedFeedSendsNothing() {
    feed->setDraft("secret");
    feed->addLine({.id = "A", .text = "Secret."});
    const QDBusMessage reply = call(kInterface, "LastLines", {10U});
    QCOMPARE(reply.type(), QDBusMessage::ErrorMessage);
    // A signal that follows shows that none came before it.
    feed->open(CaptionFeed::State::running);
    QTRY_COMPARE(listener->heard.size(), 1U);
    QCOMPARE(listener->heard[0].member(), "StateChanged");
    QCOMPARE(lines(10).size(), 0);
    feed->close();
    QCOMPARE(call(kInterface, "LastLines", {10U}).type(), QDBusMessage::ErrorMessage);
  }

  void signalsTellDraftsLinesTranslationsAndState() {
    feed->open(CaptionFeed::State::starting);
    feed->setState(CaptionFeed::State::running);
    feed->setDraft("thank you");
    feed->addLine({.id = "A",
                   .text = "Thank you.",
                   .time = Instant(std::chrono::milliseconds(1234)),
                   .language = "en_US"});
    feed->addTranslation("A", "es", "Gracias.");
    QTRY_COMPARE(listener->heard.size(), 5U);
    QStringList members;
    for (const QDBusMessage& message : listener->heard) members.append(message.member());
    QCOMPARE(members,
             QStringList({"StateChanged", "StateChanged", "Draft", "Line", "Translation"}));
    QCOMPARE(listener->heard[0].arguments(), QVariantList({"starting"}));
    QCOMPARE(listener->heard[1].arguments(), QVariantList({"running"}));
    QCOMPARE(listener->heard[2].arguments(), QVariantList({"thank you"}));
    const QVariantList line = listener->heard[3].arguments();
    QCOMPARE(line.first(2), QVariantList({"A", "Thank you."}));
    const auto details = qdbus_cast<QVariantMap>(line.at(2));
    QCOMPARE(details, QVariantMap({{"time", qlonglong(1234)}, {"language", "en_US"}}));
    QCOMPARE(listener->heard[4].arguments(), QVariantList({"A", "es", "Gracias."}));
  }

  void theLastLinesAreGivenWithTheirTranslations() {
    feed->open(CaptionFeed::State::running);
    for (int i = 0; i < 150; ++i) feed->addLine({.id = QString::number(i), .text = "Line."});
    feed->addTranslation("148", "ko", "줄.");
    feed->addTranslation("3", "ko", "오래된 줄.");
    QCOMPARE(lines(1000).size(), qsizetype(DBusCaptionFeed::kMaxLines));
    QCOMPARE(lines(1000).first().id, "50");
    const QList<DBusCaptionLine> last = lines(2);
    QCOMPARE(last.size(), 2);
    QCOMPARE(last[1].id, "149");
    using Texts = QMap<QString, QString>;
    QCOMPARE(qdbus_cast<Texts>(last[0].details.value("translations")), Texts({{"ko", "줄."}}));
    feed->clear();
    QCOMPARE(lines(2).size(), 0);
  }

  void theInterfaceDescribesItself() {
    feed->open(CaptionFeed::State::running);
    const QString xml = call("org.freedesktop.DBus.Introspectable", "Introspect", {})
                            .arguments()
                            .value(0)
                            .toString();
    for (const char* part :
         {"<interface name=\"app.velun.Velun.Captions\">", "<method name=\"LastLines\">",
          "type=\"a(ssa{sv})\"", "<signal name=\"Draft\">", "<signal name=\"Line\">",
          "<signal name=\"Translation\">", "<signal name=\"StateChanged\">",
          "<property name=\"State\" type=\"s\" access=\"read\"/>"}) {
      QVERIFY2(xml.contains(part), part);
    }
    const QDBusMessage state =
        call("org.freedesktop.DBus.Properties", "Get", {QString(kInterface), "State"});
    QCOMPARE(state.arguments().value(0).value<QDBusVariant>().variant(), QVariant("running"));
  }

 private:
  /// Calls from another program's side while this thread replies.
  QDBusMessage call(const char* interface, const char* method, const QVariantList& arguments) {
    auto message = QDBusMessage::createMethodCall(name, kPath, interface, method);
    message.setArguments(arguments);
    QDBusPendingCall pending = other->asyncCall(message);
    QDBusPendingCallWatcher watcher(pending);
    QSignalSpy finished(&watcher, &QDBusPendingCallWatcher::finished);
    if (!watcher.isFinished()) finished.wait();
    return pending.reply();
  }

  QList<DBusCaptionLine> lines(unsigned count) {
    const QDBusMessage reply = call(kInterface, "LastLines", {count});
    return qdbus_cast<QList<DBusCaptionLine>>(reply.arguments().value(0));
  }

  std::unique_ptr<test::PrivateBus> bus;
  QString name;
  std::unique_ptr<DBusCaptionFeed> feed;
  std::unique_ptr<QDBusConnection> other;
  std::unique_ptr<Listener> listener;
};

QTEST_GUILESS_MAIN(CaptionFeedTest)
#include "caption_feed_test.moc"
