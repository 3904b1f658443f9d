// While the books are locked, the main window holds nothing of them: walking its
// accessibility tree, as a screen reader does, finds the lock and no account, payee
// or amount. Once unlocked, the same walk finds the books, so the walk is known to see.
//
// Showing the window takes a QGuiApplication, which the test program (a
// QCoreApplication) cannot make. So this file is built twice: as the GoogleTest
// below, and with COINHALL_LOCKSCREEN_PROBE as the small program that test runs,
// which opens the real Main.qml on locked books and prints every accessible node.

#ifdef COINHALL_LOCKSCREEN_PROBE

#include "help/helptexts.h"
#include "helpers/testing.h"
#include "store/store.h"

#include <QAccessible>
#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QSettings>
#include <QTemporaryDir>
#include <QTextStream>
#include <QThread>
#include <QWindow>
#include <QtQml/qqmlextensionplugin.h>

#include <cstdio>
#include <functional>

Q_IMPORT_QML_PLUGIN(CoinhallPlugin)

namespace {

// Refuses everyone until `open` is set: the owner's check as a test controls it.
class Gate final : public Authenticator
{
public:
    bool canEvaluate() const override { return true; }
    void evaluate(const QString &, const QString &, std::function<void(bool)> done) override { done(open); }

    bool open = false;
};

class NoNotifier final : public Notifier
{
public:
    void removeAllPending() override {}
    void add(const ReminderRequest &) override {}
    void requestAuthorization() override {}
};

QString oneLine(QString text)
{
    return text.replace(QLatin1Char('\t'), QLatin1Char(' ')).replace(QLatin1Char('\n'), QLatin1Char(' '));
}

// One line per node: phase, window title, role, name, value, description.
void print(QTextStream &out, const QString &phase, const QString &window, QAccessibleInterface *node, int depth)
{
    if (!node || !node->isValid() || depth > 400)
        return;
    out << phase << '\t' << oneLine(window) << '\t' << int(node->role()) << '\t'
        << oneLine(node->text(QAccessible::Name)) << '\t' << oneLine(node->text(QAccessible::Value)) << '\t'
        << oneLine(node->text(QAccessible::Description)) << '\n';
    for (int i = 0; i < node->childCount(); ++i)
        print(out, phase, window, node->child(i), depth + 1);
}

void printWindows(QTextStream &out, const QString &phase)
{
    for (QWindow *window : QGuiApplication::topLevelWindows())
        print(out, phase, window->title(), QAccessible::queryAccessibleInterface(window), 0);
    out.flush();
}

// Lets loaders, layouts and the accessible tree catch up.
void settle()
{
    QDeadlineTimer deadline(300);
    while (!deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
}

int fail(const char *why)
{
    std::fprintf(stderr, "lockscreen probe: %s\n", why);
    return 2;
}

} // namespace

int main(int argc, char **argv)
{
    QTemporaryDir home;
    if (!home.isValid())
        return fail("no temporary folder");
    for (const char *variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        qputenv(variable, QFile::encodeName(home.filePath(QString::fromLatin1(variable))));
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");

    QGuiApplication app(argc, argv);
    QGuiApplication::setOrganizationName(AppInfo::organizationName());
    QGuiApplication::setApplicationName(AppInfo::applicationName());
    QQuickStyle::setStyle(QStringLiteral("Basic"));
    {
        QSettings prefs(AppInfo::organizationName(), AppInfo::applicationName());
        prefs.setValue(QStringLiteral("requireUnlock"), true);
        prefs.setValue(QStringLiteral("welcomed"), true);
    }

    auto gate = std::make_shared<Gate>();
    StoreOptions options{home.filePath(QStringLiteral("books"))};
    options.authenticator = gate;
    options.notifier = std::make_shared<NoNotifier>();
    Store store(options);
    Store::setShared(&store);
    if (!store.locked())
        return fail("the books did not start locked");
    Transaction pay;
    pay.date = store.now();
    pay.accountID = store.activeAccounts().front().id;
    pay.amount = *Decimal::fromString(std::string_view("1234.56"));
    pay.payee = QStringLiteral("Harbor Studio");
    pay.category = QStringLiteral("Royalties");
    pay.kind = TxKind::royalty;
    if (!store.add(pay))
        return fail("the line could not be saved");

    // Something listens for accessibility events, as a screen reader would.
    QAccessible::installUpdateHandler([](QAccessibleEvent *) {});

    int refusals = 0;
    QObject::connect(&store, &Store::unlockFailed, [&refusals] { ++refusals; });

    QQmlApplicationEngine engine;
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    qmlRegisterSingletonInstance("Coinhall", 1, 0, "Store", &store);
    engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Coinhall/Main.qml")));
    auto *window = qobject_cast<QQuickWindow *>(engine.rootObjects().value(0));
    if (!window)
        return fail("Main.qml did not load");
    // The overlay asks once by itself on appearing, and is refused.
    if (!waitFor([&] { return window->isExposed() && refusals > 0; }, 10000))
        return fail("the lock never asked to unlock");
    settle();

    // Turning accessibility on makes Qt Quick give every item that exists now its
    // accessible node (the offscreen platform never turns it on by itself).
    QTextStream out(stdout);
    QAccessible::setActive(true);
    settle();
    printWindows(out, QStringLiteral("locked"));

    gate->open = true;
    store.unlock(QStringLiteral("secret"));
    if (!waitFor([&] { return !store.locked(); }, 10000))
        return fail("the books did not open");
    settle();
    // Again, for the items made since.
    QAccessible::setActive(false);
    QAccessible::setActive(true);
    settle();
    printWindows(out, QStringLiteral("unlocked"));
    return 0;
}

#else

#include <QAccessible>
#include <QProcess>
#include <QStringList>

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

// One accessible node as the probe printed it.
struct Node
{
    QString phase;
    QString window;
    int role = 0;
    QString name;
    QString value;
    QString description;

    QString texts() const { return name + QLatin1Char('|') + value + QLatin1Char('|') + description; }
};

class LockScreen : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        QProcess probe;
        probe.start(QStringLiteral(COINHALL_LOCKSCREEN_PROBE_EXE), {});
        ASSERT_TRUE(probe.waitForFinished(120000));
        s_errors = QString::fromUtf8(probe.readAllStandardError());
        ASSERT_EQ(probe.exitStatus(), QProcess::NormalExit) << qPrintable(s_errors);
        ASSERT_EQ(probe.exitCode(), 0) << qPrintable(s_errors);
        const QStringList lines = QString::fromUtf8(probe.readAllStandardOutput()).split(QLatin1Char('\n'));
        for (const QString &line : lines) {
            const QStringList f = line.split(QLatin1Char('\t'));
            if (f.size() == 6)
                s_nodes.push_back({f[0], f[1], f[2].toInt(), f[3], f[4], f[5]});
        }
    }

    static std::vector<Node> phase(const char *name)
    {
        std::vector<Node> nodes;
        std::copy_if(s_nodes.begin(), s_nodes.end(), std::back_inserter(nodes),
                     [name](const Node &n) { return n.phase == QLatin1String(name); });
        return nodes;
    }

    static bool has(const std::vector<Node> &nodes, const QString &text, int role = -1)
    {
        return std::any_of(nodes.begin(), nodes.end(),
                           [&](const Node &n) { return (role < 0 || n.role == role) && n.texts().contains(text); });
    }

    static inline std::vector<Node> s_nodes;
    static inline QString s_errors;
};

TEST_F(LockScreen, LockedWindowOffersTheLockAndNothingOfTheBooks)
{
    const std::vector<Node> nodes = phase("locked");
    ASSERT_FALSE(nodes.empty()) << qPrintable(s_errors);
    EXPECT_TRUE(has(nodes, QStringLiteral("COINHALL IS LOCKED")));
    EXPECT_TRUE(has(nodes, QStringLiteral("Unlock"), QAccessible::Button));
    EXPECT_TRUE(has(nodes, QStringLiteral("Account password"), QAccessible::EditableText));
    for (const Node &node : nodes) {
        for (const char *secret : {"Main checking", "Savings", "Harbor Studio", "$", "1,234.56", "TOTAL"})
            EXPECT_FALSE(node.texts().contains(QLatin1String(secret)))
                << "window \"" << qPrintable(node.window) << "\" role " << node.role << ": "
                << qPrintable(node.texts());
    }
    // Not even the screens' keys are there to reach in the main window.
    std::vector<Node> main;
    std::copy_if(nodes.begin(), nodes.end(), std::back_inserter(main),
                 [](const Node &n) { return n.window == QLatin1String("QFS Coinhall"); });
    ASSERT_FALSE(main.empty());
    EXPECT_FALSE(has(main, QStringLiteral("Money out")));
    EXPECT_FALSE(has(main, QStringLiteral("Transactions")));
    EXPECT_FALSE(has(main, QStringLiteral("Console")));
}

TEST_F(LockScreen, SameWalkFindsTheBooksOnceUnlocked)
{
    const std::vector<Node> nodes = phase("unlocked");
    ASSERT_FALSE(nodes.empty()) << qPrintable(s_errors);
    EXPECT_TRUE(has(nodes, QStringLiteral("Main checking")));
    EXPECT_TRUE(has(nodes, QStringLiteral("$1,234.56")));
    EXPECT_TRUE(has(nodes, QStringLiteral("Money out"), QAccessible::Button));
}

} // namespace

#endif
