// While the books are locked, the main window holds nothing of them: walking its
// accessibility tree, as a screen reader does, finds the lock and no account, payee
// or amount. That the walk sees the window's texts shows in the lock's own; that the
// books show once unlocked, the journeys see (tests/journeys/journeys.py, lock).
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
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QSettings>
#include <QTemporaryDir>
#include <QTextStream>
#include <QtQml/qqmlextensionplugin.h>

#include <cstdio>

Q_IMPORT_QML_PLUGIN(CoinhallPlugin)

namespace {

// Refuses everyone.
class Gate final : public Authenticator
{
public:
    bool canEvaluate() const override { return true; }
    void evaluate(const QString &, const QString &, std::function<void(bool)> done) override { done(false); }
};

// Lets loaders, layouts and the accessible tree catch up.
void settle()
{
    QDeadlineTimer deadline(300);
    while (!deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
}

// Every accessible node of every window, once settled: one line each of window title,
// role and the node's texts.
void printWindows()
{
    settle();
    QTextStream out(stdout);
    const std::function<void(const QString &, QAccessibleInterface *, int)> print =
        [&](const QString &window, QAccessibleInterface *node, int depth) {
            if (!node || !node->isValid() || depth > 400)
                return;
            const QString texts = node->text(QAccessible::Name) + '|' + node->text(QAccessible::Value) + '|' +
                                  node->text(QAccessible::Description);
            out << window << '\t' << int(node->role()) << '\t' << QString(texts).replace('\t', ' ').replace('\n', ' ')
                << '\n';
            for (int i = 0; i < node->childCount(); ++i)
                print(window, node->child(i), depth + 1);
        };
    for (QWindow *window : QGuiApplication::topLevelWindows())
        print(window->title(), QAccessible::queryAccessibleInterface(window), 0);
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
    for (const char *variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        qputenv(variable, QFile::encodeName(home.filePath(QString::fromLatin1(variable))));
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");

    QGuiApplication app(argc, argv);
    QGuiApplication::setOrganizationName(AppInfo::organizationName());
    QGuiApplication::setApplicationName(AppInfo::applicationName());
    QQuickStyle::setStyle(QStringLiteral("Basic"));
    QSettings(AppInfo::organizationName(), AppInfo::applicationName()).setValue("requireUnlock", true);
    QSettings(AppInfo::organizationName(), AppInfo::applicationName()).setValue("welcomed", true);

    // With "encrypted", the books are encrypted with a passphrase before the window starts.
    const bool encrypted = QCoreApplication::arguments().contains(QStringLiteral("encrypted"));
    StoreOptions options{home.filePath(QStringLiteral("books")), std::make_shared<Gate>(),
                         std::make_shared<NoNotifier>()};
    options.sealingCost = Sealed::Cost::cheapest();
    const auto addLine = [](Store &store) {
        return bool(store.add({.date = store.now(),
                               .accountID = store.activeAccounts().front().id,
                               .amount = d("1234.56"),
                               .payee = "Harbor Studio",
                               .category = "Royalties",
                               .kind = TxKind::royalty}));
    };
    if (encrypted) {
        Store before(options);
        if (!addLine(before) || !before.encryptWith(Sealed::Secret("tuba solo", 9)))
            return fail("the books could not be encrypted");
    }
    Store store(options);
    Store::setShared(&store);
    if (!store.locked())
        return fail("the books did not start locked");
    if (!encrypted && !addLine(store))
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
    // The overlay asks once by itself on appearing, and is refused; encrypted books wait
    // for their passphrase without asking.
    if (!waitFor([&] { return window->isExposed() && (encrypted || refusals > 0); }, 10000))
        return fail("the lock never asked to unlock");

    settle();
    // Turning accessibility on makes Qt Quick give every item that exists now its
    // accessible node (the offscreen platform never turns it on by itself).
    QAccessible::setActive(true);
    printWindows();
    return 0;
}

#else

#include <QAccessible>
#include <QProcess>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

// Run for books locked by the account password, and for books encrypted with a passphrase.
class LockScreen : public ::testing::TestWithParam<bool>
{
};

TEST_P(LockScreen, LockedWindowOffersTheLockAndNothingOfTheBooks)
{
    QProcess probe;
    probe.start(QStringLiteral(COINHALL_LOCKSCREEN_PROBE_EXE),
                GetParam() ? QStringList{QStringLiteral("encrypted")} : QStringList{});
    ASSERT_TRUE(probe.waitForFinished(120000));
    const QString errors = QString::fromUtf8(probe.readAllStandardError());
    ASSERT_EQ(probe.exitStatus(), QProcess::NormalExit) << qPrintable(errors);
    ASSERT_EQ(probe.exitCode(), 0) << qPrintable(errors);
    // One line a node: "<window>\t<role>\t<name>|<value>|<description>".
    const QStringList nodes = QString::fromUtf8(probe.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
    auto inMain = [&nodes](const char *text, int role = -1) {
        return std::any_of(nodes.begin(), nodes.end(), [&](const QString &node) {
            return node.section('\t', 0, 0) == "QFS Coinhall" &&
                   (role < 0 || node.section('\t', 1, 1).toInt() == role) && node.section('\t', 2).contains(text);
        });
    };
    EXPECT_EQ(std::tuple(inMain("COINHALL IS LOCKED"), inMain("Unlock", QAccessible::Button)), std::tuple(true, true));
    EXPECT_EQ(inMain("Your books are encrypted. Type your passphrase to open them."), GetParam());
    EXPECT_EQ(inMain("Passphrase", QAccessible::EditableText), GetParam());
    // Not even the screens' keys are there to reach, nor anything of the books in any window.
    for (const char *key : {"Money out", "Transactions", "Console"})
        EXPECT_FALSE(inMain(key)) << key;
    for (const QString &node : nodes)
        for (const char *secret : {"Main checking", "Savings", "Harbor Studio", "$", "1,234.56", "TOTAL"})
            EXPECT_FALSE(node.section('\t', 2).contains(secret)) << qPrintable(node);
}
INSTANTIATE_TEST_SUITE_P(PasswordOrPassphrase, LockScreen, ::testing::Bool());

} // namespace

#endif
