#include "render.h"

#include "demobook.h"
#include "model/moneyfile.h"
#include "store/atomicfile.h"
#include "store/backups.h"
#include "store/reports.h"
#include "store/store.h"
#include "window.h"
#include "yeardocument.h"

#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QUrl>

#include <cstdio>
#include <tuple>

namespace {

// Bill reminders have nowhere to go while pictures are made.
class SilentNotifier final : public Notifier
{
public:
    void removeAllPending() override {}
    void add(const ReminderRequest &) override {}
    void requestAuthorization() override {}
};

// What the QML side of the render calls: save the window as a picture, and finish.
class ScreenShots : public QObject
{
    Q_OBJECT

public:
    explicit ScreenShots(QString dir)
        : m_dir(std::move(dir))
    {}
    int failures() const { return m_failures; }

    // Draws `window` as it is now into <dir>/<name>.png.
    Q_INVOKABLE bool save(QObject *window, const QString &name)
    {
        auto *quickWindow = qobject_cast<QQuickWindow *>(window);
        const QString path = QDir(m_dir).filePath(name + QStringLiteral(".png"));
        const bool saved = quickWindow && quickWindow->grabWindow().save(path);
        if (saved && !m_saidRenderer && qEnvironmentVariableIsSet("COINHALL_DEBUG")) {
            // What really drew: where the OpenGL asked for cannot be had (the offscreen
            // platform without a display), Qt falls back to its software renderer.
            m_saidRenderer = true;
            const auto api = quickWindow->rendererInterface()->graphicsApi();
            std::fprintf(stderr, "Coinhall: the pictures are drawn with %s\n",
                         api == QSGRendererInterface::Software ? "the software renderer"
                         : api == QSGRendererInterface::OpenGL ? "OpenGL"
                                                               : "another graphics API");
        }
        if (!saved) {
            ++m_failures;
            std::fprintf(stderr, "Could not save %s\n", qPrintable(path));
        }
        return saved;
    }

    // All pictures are made: ends the program.
    Q_INVOKABLE void finish(int count)
    {
        std::fprintf(stdout, "Rendered %d pictures into %s\n", count - m_failures, qPrintable(m_dir));
        QCoreApplication::exit(m_failures == 0 ? 0 : 1);
    }

private:
    QString m_dir;
    int m_failures = 0;
    bool m_saidRenderer = false;
};

} // namespace

int renderScreens(int &argc, char **argv, const QString &dir)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Settings, data and caches of this run live in a folder of their own.
    QTemporaryDir home;
    if (!home.isValid()) {
        std::fprintf(stderr, "Could not make a temporary folder.\n");
        return 1;
    }
    for (const char *variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        qputenv(variable, QFile::encodeName(home.filePath(QString::fromLatin1(variable))));

    QGuiApplication app(argc, argv);
    prepareWindowApplication();
    const QString out = QDir(dir).absolutePath();
    if (dir.isEmpty() || !QDir().mkpath(out)) {
        std::fprintf(stderr, "Could not make the folder %s\n", qPrintable(dir));
        return 1;
    }

    StoreOptions options;
    options.dir = home.filePath(QStringLiteral("books"));
    options.notifier = std::make_shared<SilentNotifier>();
    // Three days of backups, as books in use have them, for the Accounts screen.
    const QString backups = options.dir + QStringLiteral("/Backups");
    QDir().mkpath(backups);
    for (int days = 1; days <= 3; ++days) {
        const QDate day = QDate::currentDate().addDays(-days);
        std::ignore = writeFileAtomically(backups + QLatin1Char('/') + Backups::fileName(day),
                                          MoneyFile::encode(demoBook(day)), nullptr);
    }
    Store store(options);
    std::ignore = store.setBook(demoBook(QDate::currentDate()));
    Store::setShared(&store);

    // The year's report for the accountant, its first page as it prints.
    const std::vector<int> years = Reports::yearsWithLines(store.book().transactions);
    if (!years.empty()) {
        const QString page = QDir(out).filePath(QStringLiteral("year-report.png"));
        if (!YearDocument::firstPage(Reports::yearReport(store.book(), years.front()), 100).save(page))
            std::fprintf(stderr, "Could not save %s\n", qPrintable(page));
    }

    ScreenShots shots(out);
    QQmlApplicationEngine engine;
    connectEngine(engine, store);
    engine.setInitialProperties({{QStringLiteral("shots"), QVariant::fromValue<QObject *>(&shots)}});
    engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Coinhall/RenderScreens.qml")));
    if (engine.rootObjects().isEmpty())
        return 1;
    return QGuiApplication::exec();
}

#include "render.moc"
