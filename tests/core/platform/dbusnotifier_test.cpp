// The freedesktop notification backend against a real, private message bus with a
// notification service of the test's own, so nothing reaches the desktop.
#include "helpers/testing.h"
#include "platform/dbusnotifier.h"
#include "platform/reminderledger.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVirtualObject>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

ReminderRequest request(const char *title, qint64 inMs)
{
    return {QStringLiteral("ID-0"), QString::fromUtf8(title),
            QStringLiteral("$1,200.00 · open Coinhall to mark it paid"),
            Instant::fromMSecs(Instant::now().msecs() + inMs)};
}

// Answers Notify and GetServerInformation as a desktop would, keeping what it was sent.
struct NotificationService : QDBusVirtualObject
{
    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        if (message.member() == QLatin1String("Notify")) {
            shown.push_back({message.arguments(), Instant::now()});
            return connection.send(message.createReply(QVariantList{uint(shown.size())}));
        }
        return message.member() == QLatin1String("GetServerInformation") &&
               connection.send(message.createReply(QVariantList{"Test", "Coinhall", "1", "1.2"}));
    }
    std::vector<std::pair<QVariantList, Instant>> shown; // (arguments, arrival)
};

// A bus of our own whose configuration activates nothing, so no notification
// service installed on the machine can answer in place of the test's.
class DBusNotifierTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        const QString daemon = QStandardPaths::findExecutable(QStringLiteral("dbus-daemon"));
        if (daemon.isEmpty())
            GTEST_SKIP() << "dbus-daemon is not installed";
        const QString config = temp.filePath(QStringLiteral("bus.conf"));
        writeAll(config, QStringLiteral("<busconfig><type>session</type><listen>unix:dir=%1</listen>"
                                        "<policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
                                        "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>")
                             .arg(temp.path())
                             .toUtf8());
        bus.start(daemon, {"--config-file=" + config, "--nofork", "--print-address"});
        ASSERT_TRUE(waitFor([&] { return bus.canReadLine(); }, 5000)) << bus.readAllStandardError().toStdString();
        address = QString::fromUtf8(bus.readLine().trimmed());
        client = QDBusConnection::connectToBus(address, QStringLiteral("coinhall-client"));
        ASSERT_TRUE(client.isConnected());
    }

    void startService()
    {
        server = QDBusConnection::connectToBus(address, QStringLiteral("coinhall-service"));
        ASSERT_TRUE(server.registerVirtualObject(QStringLiteral("/org/freedesktop/Notifications"), &service));
        ASSERT_TRUE(server.registerService(QStringLiteral("org.freedesktop.Notifications")));
    }

    void TearDown() override
    {
        QDBusConnection::disconnectFromBus(QStringLiteral("coinhall-client"));
        QDBusConnection::disconnectFromBus(QStringLiteral("coinhall-service"));
        bus.kill();
        bus.waitForFinished(5000);
    }

    QTemporaryDir temp;
    QProcess bus;
    QString address;
    QDBusConnection client{QString()};
    QDBusConnection server{QString()};
    NotificationService service;
};

} // namespace

// Only what is still pending when its moment comes is shown: nothing removed, nothing past.
TEST_F(DBusNotifierTest, ShowsThePendingRequestWhenItsTimeComes)
{
    DBusNotifier notifier(client);
    std::vector<bool> reachable;
    QObject::connect(&notifier, &DBusNotifier::serviceChecked, [&](bool r) { reachable.push_back(r); });
    notifier.requestAuthorization(); // nobody owns the name yet
    ASSERT_TRUE(waitFor([&] { return reachable.size() == 1; }, 5000));
    startService();
    notifier.requestAuthorization();
    ASSERT_TRUE(waitFor([&] { return reachable.size() == 2; }, 5000));
    EXPECT_EQ(reachable, (std::vector<bool>{false, true}));

    notifier.add(request("Gym is due today", 200));
    notifier.add(request("Water is due today", 250));
    notifier.removeAllPending();
    notifier.add(request("Past is due today", -1000));
    EXPECT_EQ(notifier.pendingCount(), 0);
    const ReminderRequest rent = request("Rent is due today", 300);
    notifier.add(rent);
    EXPECT_EQ(notifier.pendingCount(), 1);
    ASSERT_TRUE(waitFor([&] { return !service.shown.empty(); }, 5000));
    waitFor([] { return false; }, 500); // anything cancelled would have come by now
    ASSERT_EQ(service.shown.size(), 1u);
    const auto &[arguments, arrived] = service.shown[0];
    EXPECT_GE(arrived, rent.fireAt);
    ASSERT_EQ(arguments.size(), 8);
    // Program, replaces none, icon, title, body, default timeout; the desktop finds the
    // program's name and icon through its id.
    EXPECT_EQ(std::tuple(arguments[0].toString(), arguments[1].toUInt(), arguments[2].toString(),
                         arguments[3].toString(), arguments[4].toString(), arguments[7].toInt()),
              std::tuple("QFS Coinhall", 0u, "com.quillfern.Coinhall", rent.title, rent.body, -1));
    const auto hints = qdbus_cast<QVariantMap>(arguments[6].value<QDBusArgument>());
    EXPECT_EQ(std::tuple(hints.value("sound-name").toString(), hints.value("desktop-entry").toString()),
              std::tuple("message-new-instant", "com.quillfern.Coinhall"));
    EXPECT_EQ(notifier.pendingCount(), 0);
}

// The window and the reminder service deliver from one ledger: a reminder is shown by
// whoever takes it first, never before its moment, never late, never once the plan has
// dropped it (its bill was paid), and a click on it comes back to the one that showed it.
TEST_F(DBusNotifierTest, OneLedgerShowsEachReminderOnceAndOnlyWhileItIsPlanned)
{
    startService();
    const auto ledger = std::make_shared<ReminderLedger>(temp.path());
    const ReminderRequest rent = request("Rent is due today", 300);
    const ReminderRequest gym = request("Gym is due today", 400);
    ASSERT_TRUE(ledger->writePlan({rent, gym}));
    EXPECT_EQ(ledger->plan(), (std::vector<ReminderRequest>{rent, gym}));

    DBusNotifier window(client, ledger);
    bool clicked = false;
    window.onClicked = [&] { clicked = true; };
    window.add(rent);
    window.add(gym);
    ASSERT_TRUE(ledger->writePlan({rent})); // the gym bill was paid meanwhile
    EXPECT_FALSE(ledger->take(rent, Instant::now())) << "not before its moment";
    ASSERT_TRUE(waitFor([&] { return !service.shown.empty(); }, 5000));
    waitFor([] { return false; }, 300);
    EXPECT_EQ(service.shown.size(), 1u);
    // The service, started a moment later, finds it taken; another ledger on the same
    // folder (another process) sees the same.
    EXPECT_FALSE(ReminderLedger(temp.path()).take(rent, Instant::now()));
    const Instant late = Instant::fromMSecs(rent.fireAt.msecs() + ReminderLedger::lateLimitMs + 1000);
    const ReminderRequest other{"ID-1", "Phone is due today", "$40.00", rent.fireAt};
    ASSERT_TRUE(ledger->writePlan({rent, other}));
    EXPECT_FALSE(ledger->take(other, late)) << "slept through its moment";
    EXPECT_TRUE(ledger->take(other, rent.fireAt));

    ASSERT_TRUE(waitFor([&] { return window.openCount() == 1; }, 5000));
    const uint id = 1; // the test's service numbers them from 1
    QDBusMessage click = QDBusMessage::createSignal("/org/freedesktop/Notifications", "org.freedesktop.Notifications",
                                                    "ActionInvoked");
    click << id << QStringLiteral("default");
    ASSERT_TRUE(server.send(click));
    EXPECT_TRUE(waitFor([&] { return clicked; }, 5000));
}

TEST(DBusNotifier, WithoutABusNothingHappensAndNothingIsSaid)
{
    static QStringList messages;
    const QtMessageHandler previous =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &text) { messages << text; });
    {
        DBusNotifier notifier(QDBusConnection::connectToBus(QStringLiteral("unix:path=/nonexistent/bus"), "nowhere"));
        bool reachable = true;
        QObject::connect(&notifier, &DBusNotifier::serviceChecked, [&](bool r) { reachable = r; });
        notifier.add(request("Rent is due today", 50));
        notifier.requestAuthorization();
        EXPECT_TRUE(waitFor([&] { return notifier.pendingCount() == 0; }, 3000));
        EXPECT_FALSE(reachable);
        QDBusConnection::disconnectFromBus(QStringLiteral("nowhere"));
    }
    qInstallMessageHandler(previous);
    EXPECT_TRUE(messages.isEmpty()) << messages.join(QLatin1Char('\n')).toStdString();
}
