#include "window.h"

#include "commandline/commandline.h"
#include "help/helptexts.h"
#include "reminderservice.h"
#include "renderer.h"
#include "singlecopy.h"
#include "store/store.h"

#include <QApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QIcon>
#include <QQmlApplicationEngine>
#include <QQmlEngine>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QTimer>
#include <QUrl>
#include <QtQml/qqmlextensionplugin.h>

#include <cstdio>
#include <memory>

Q_IMPORT_QML_PLUGIN(CoinhallPlugin)

namespace {

// The type faces embedded at build time; a face that is missing falls back to the system font.
void registerFonts()
{
    for (const char *face :
         {":/fonts/Unbounded.ttf", ":/fonts/Unbounded_700Bold.ttf", ":/fonts/Manrope.ttf",
          ":/fonts/Manrope-SemiBold.ttf", ":/fonts/Manrope-Bold.ttf", ":/fonts/MaterialIcons-Regular.ttf"})
        QFontDatabase::addApplicationFont(QString::fromLatin1(face));
}

void bringForward(QQuickWindow *window)
{
    window->setWindowStates(window->windowStates() & ~Qt::WindowMinimized);
    window->show();
    window->raise();
    window->requestActivate();
}

// With COINHALL_FIRST_FRAME set, prints the wall-clock time of the first frame shown
// (milliseconds since 1970) so a launcher can measure the start-up; with the value
// "quit" the program then ends.
void reportFirstFrame(QQuickWindow *window)
{
    if (!qEnvironmentVariableIsSet("COINHALL_FIRST_FRAME"))
        return;
    const bool quit = qEnvironmentVariable("COINHALL_FIRST_FRAME") == QLatin1String("quit");
    auto connection = std::make_shared<QMetaObject::Connection>();
    *connection = QObject::connect(window, &QQuickWindow::frameSwapped, window, [connection, quit] {
        std::fprintf(stderr, "first frame at %lld\n", static_cast<long long>(QDateTime::currentMSecsSinceEpoch()));
        QObject::disconnect(*connection);
        if (quit)
            QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    });
}

// With COINHALL_STALLS set, prints each time the window's thread was kept from its
// events (and so from drawing) for more than 50 ms, so a launcher can measure it.
void reportStalls(QObject *owner)
{
    if (!qEnvironmentVariableIsSet("COINHALL_STALLS"))
        return;
    auto *tick = new QTimer(owner);
    auto last = std::make_shared<QElapsedTimer>();
    last->start();
    tick->setInterval(10);
    QObject::connect(tick, &QTimer::timeout, owner, [last] {
        if (const qint64 gap = last->restart(); gap > 50)
            std::fprintf(stderr, "stall %lld ms\n", static_cast<long long>(gap));
    });
    tick->start();
}

} // namespace

void prepareWindowApplication()
{
    QGuiApplication::setOrganizationName(AppInfo::organizationName());
    QGuiApplication::setApplicationName(AppInfo::applicationName());
    QGuiApplication::setApplicationDisplayName(AppInfo::displayName());
    QGuiApplication::setDesktopFileName(AppInfo::applicationId());
    QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/coinhall.png")));
    QQuickStyle::setStyle(QStringLiteral("Basic"));
    registerFonts();
    chooseRenderer();
}

void connectEngine(QQmlEngine &engine, Store &store)
{
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    qmlRegisterSingletonInstance("Coinhall", 1, 0, "Store", &store);
}

int runWindow(int &argc, char **argv, const QString &dataDir, const std::function<void(const WindowParts &)> &shown)
{
    // A widgets application, for the one widget the window opens: the print dialog.
    QApplication app(argc, argv);
    prepareWindowApplication();

    const QString open = openArgument(QCoreApplication::arguments());
    SingleCopy singleCopy(SingleCopy::defaultName(dataDir));
    if (!singleCopy.claim(open))
        return 0;

    // Up to about 200,000 lines the books are read before the first frame, in well under
    // a second; a larger money file is read while the window shows how far it got. From
    // 20,000 lines on (about 7 MB), saving would hold up drawing: it goes to another thread.
    Store store({.dir = dataDir, .readInBackgroundFrom = 64 << 20, .saveInBackgroundFrom = 20000});
    Store::setShared(&store);

    QQmlApplicationEngine engine;
    connectEngine(engine, store);
    engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Coinhall/Main.qml")));
    auto *window = qobject_cast<QQuickWindow *>(engine.rootObjects().value(0));
    if (!window)
        return 1;
    reportFirstFrame(window);
    reportStalls(window);
    // A sheet or screen asked for by the desktop: shown once the books are open.
    const auto show = [window](const QString &what) {
        if (auto *rootView = window->property("rootView").value<QObject *>(); rootView && !what.isEmpty())
            QMetaObject::invokeMethod(rootView, "openFromOutside", Q_ARG(QString, what));
    };
    // The first sheet waits for the first frame: the window must have its size to
    // place it.
    if (!open.isEmpty()) {
        auto once = std::make_shared<QMetaObject::Connection>();
        *once = QObject::connect(window, &QQuickWindow::frameSwapped, window, [once, show, open] {
            QObject::disconnect(*once);
            show(open);
        });
    }
    QObject::connect(&singleCopy, &SingleCopy::raiseRequested, window, [window, show](const QString &what) {
        bringForward(window);
        show(what);
    });
    QObject::connect(&store, &Store::reminderClicked, window, [window, show] {
        bringForward(window);
        show(QStringLiteral("bills"));
    });

    // Once the window is up: permission for bill reminders, then the first schedule.
    QTimer::singleShot(0, &store, [] {
        if (Store *shared = Store::shared())
            shared->requestNotifications();
        if (Store *shared = Store::shared())
            shared->scheduleReminders();
    });
    // The service that shows reminders while the window is closed reads the books of
    // the usual folder only.
    if (dataDir.isEmpty())
        QTimer::singleShot(0, &store, &ReminderService::enableOnce);
    if (shown)
        shown({store, *window, singleCopy});
    return QGuiApplication::exec();
}
