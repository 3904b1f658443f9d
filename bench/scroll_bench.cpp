// Scrolling the register in the real window: the Transactions screen of a 100,000-line
// book in a 2560×1440 window at 200% zoom, drawn by Qt Quick's software renderer, and
// scrolled as a person does it: wheel notches at a steady pace, flings, page after
// page, and the scroll bar dragged from top to bottom.
//
// A frame's time is how long the window's thread worked for it: all it did since the
// previous frame was shown (input, building rows, timers, incubating rows ahead) and
// the frame itself (polish, sync, paint, flush to the display). The software renderer
// draws on that thread, so a frame whose work takes over 16 ms is a frame shown late
// at 60 Hz, whatever it was busy with.
//
//     Xvfb :7 -screen 0 2560x1440x24 &
//     DISPLAY=:7 QT_QPA_PLATFORM=xcb build/bench/scroll_bench [--book FILE]
//
// Without --book it writes a book of 100,000 events with genbook (beside this
// program). Settings and data live in a temporary folder; the user's are not touched.
// COINHALL_FRAMES=FILE also writes every frame (scenario, cost, draw, gap, cpu) as CSV.
#include "platform/notifier.h"
#include "prefs.h"
#include "store/store.h"
#include "window.h"

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTimer>
#include <QUrl>
#include <QWheelEvent>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <functional>
#include <memory>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr QSize windowSize(2560, 1440);
constexpr double zoom = 2.0;
constexpr double frameBudgetMs = 16.0;

double ms(Clock::duration d)
{
    return std::chrono::duration<double, std::milli>(d).count();
}

class SilentNotifier final : public Notifier
{
public:
    void removeAllPending() override {}
    void add(const ReminderRequest &) override {}
    void requestAuthorization() override {}
};

// The application object, timing how long its thread spends handling events: with
// the software renderer every piece of the window's work is the handling of some
// event (input, a timer, a posted call, the window's update request that draws).
class TimedApplication final : public QGuiApplication
{
public:
    using QGuiApplication::QGuiApplication;

    bool notify(QObject *receiver, QEvent *event) override
    {
        if (m_depth++ == 0)
            m_spanStart = Clock::now();
        const bool handled = QGuiApplication::notify(receiver, event);
        if (--m_depth == 0)
            m_busy += Clock::now() - m_spanStart;
        return handled;
    }

    // The time spent handling events since the last call, the event handled now
    // included up to this moment; the count starts again.
    Clock::duration takeBusy()
    {
        Clock::duration busy = m_busy;
        if (m_depth > 0) {
            const Clock::time_point now = Clock::now();
            busy += now - m_spanStart;
            m_spanStart = now;
        }
        m_busy = {};
        return busy;
    }

private:
    int m_depth = 0;
    Clock::time_point m_spanStart;
    Clock::duration m_busy{};
};

struct Frame
{
    double cost; // the thread's work for the frame, ms
    double draw; // sync, paint and flush alone, ms
    double gap;  // since the previous frame was shown, ms
    double cpu;  // processor time of the thread since the previous frame, ms: the
                 // part of `cost` that other programs on the same cores cannot inflate
};

// Processor time the calling thread has used.
Clock::duration threadCpu()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec);
}

// Records each frame the window shows while `recording`.
class FrameRecorder
{
public:
    FrameRecorder(TimedApplication &app, QQuickWindow &window)
        : m_app(app)
    {
        // The connections hold `this`: the recorder stays where it was made.
        QObject::connect(
            &window, &QQuickWindow::beforeSynchronizing, &window, [this] { m_syncStart = Clock::now(); },
            Qt::DirectConnection);
        QObject::connect(
            &window, &QQuickWindow::frameSwapped, &window, [this] { shown(); }, Qt::DirectConnection);
    }

    FrameRecorder(const FrameRecorder &) = delete;
    FrameRecorder &operator=(const FrameRecorder &) = delete;

    void start()
    {
        m_frames.clear();
        m_app.takeBusy();
        m_last = Clock::now();
        m_lastCpu = threadCpu();
        m_recording = true;
    }
    std::vector<Frame> stop()
    {
        m_recording = false;
        return std::move(m_frames);
    }

private:
    void shown()
    {
        const Clock::time_point now = Clock::now();
        const Clock::duration busy = m_app.takeBusy();
        const Clock::duration cpu = threadCpu();
        if (m_recording)
            m_frames.push_back({ms(busy), ms(now - m_syncStart), ms(now - m_last), ms(cpu - m_lastCpu)});
        m_last = now;
        m_lastCpu = cpu;
    }

    TimedApplication &m_app;
    std::vector<Frame> m_frames;
    Clock::time_point m_last;
    Clock::duration m_lastCpu{};
    Clock::time_point m_syncStart;
    bool m_recording = false;
};

// Runs the event loop until the window has drawn nothing for `quietMs`, or 20 s.
void settle(QQuickWindow &window, int quietMs = 400)
{
    QEventLoop loop;
    QTimer quiet;
    quiet.setSingleShot(true);
    quiet.setInterval(quietMs);
    QObject::connect(&quiet, &QTimer::timeout, &loop, &QEventLoop::quit);
    const auto connection = QObject::connect(&window, &QQuickWindow::frameSwapped, &quiet, [&quiet] { quiet.start(); });
    QTimer::singleShot(20000, &loop, &QEventLoop::quit);
    quiet.start();
    loop.exec();
    QObject::disconnect(connection);
}

// Runs the event loop until `done` holds, checking every 20 ms; false after `limitMs`.
bool waitFor(const std::function<bool()> &done, int limitMs = 30000)
{
    Clock::time_point until = Clock::now() + std::chrono::milliseconds(limitMs);
    while (!done()) {
        if (Clock::now() > until)
            return false;
        QEventLoop loop;
        QTimer::singleShot(20, &loop, &QEventLoop::quit);
        loop.exec();
    }
    return true;
}

// Everything the scenarios work on: the window, its register and the frame record.
struct Scene
{
    QQuickWindow &window;
    QQuickItem &list;
    FrameRecorder recorder;
    QFile *frameLog = nullptr;

    // The register's first line is at the top and the window is idle.
    void toTop()
    {
        QMetaObject::invokeMethod(&list, "positionViewAtBeginning");
        settle(window);
    }

    // The list's centre in window coordinates.
    QPointF listCentre() const { return list.mapToScene(QPointF(list.width() / 2, list.height() / 2)); }

    // Index of the line in the middle of the view (or of the one just below it).
    int middleLine() const
    {
        int index = -1;
        for (qreal y = list.height() / 2; index < 0 && y < list.height(); y += 4)
            QMetaObject::invokeMethod(&list, "indexAt", Q_RETURN_ARG(int, index), Q_ARG(qreal, list.width() / 2),
                                      Q_ARG(qreal, list.property("contentY").toReal() + y));
        return index;
    }

    // Calls `step(i)` for i in [0, steps) every `intervalMs`, then lets the window come
    // to rest; records every frame from the first step until then.
    std::vector<Frame> drive(int steps, int intervalMs, const std::function<void(int)> &step)
    {
        recorder.start();
        QEventLoop loop;
        QTimer pace;
        pace.setTimerType(Qt::PreciseTimer);
        pace.setInterval(intervalMs);
        int i = 0;
        QObject::connect(&pace, &QTimer::timeout, &loop, [&] {
            step(i);
            if (++i == steps) {
                pace.stop();
                loop.quit();
            }
        });
        QTimer::singleShot(0, &pace, [&] {
            step(i++);
            pace.start();
        });
        loop.exec();
        settle(window);
        return recorder.stop();
    }

    // Posts an input event to the window, stamped with the time as the display's are.
    void post(QInputEvent *event)
    {
        event->setTimestamp(
            ulong(std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now().time_since_epoch()).count()));
        QCoreApplication::postEvent(&window, event);
    }
};

Scene *scene = nullptr;

double percentile(std::vector<double> values, double p)
{
    if (values.empty())
        return 0;
    std::sort(values.begin(), values.end());
    const auto at = size_t(std::min(double(values.size() - 1), p * double(values.size() - 1) + 0.5));
    return values[at];
}

void report(benchmark::State &state, const std::vector<Frame> &frames, int lines, const char *name)
{
    std::vector<double> costs, draws, cpus;
    for (const Frame &f : frames) {
        costs.push_back(f.cost);
        draws.push_back(f.draw);
        cpus.push_back(f.cpu);
    }
    state.counters["frames"] = double(frames.size());
    state.counters["median_ms"] = percentile(costs, 0.5);
    state.counters["p95_ms"] = percentile(costs, 0.95);
    state.counters["max_ms"] = percentile(costs, 1.0);
    state.counters["over16"] =
        double(std::count_if(costs.begin(), costs.end(), [](double c) { return c > frameBudgetMs; }));
    state.counters["draw_p95_ms"] = percentile(draws, 0.95);
    state.counters["cpu_p95_ms"] = percentile(cpus, 0.95);
    state.counters["lines"] = double(lines);
    if (scene->frameLog) {
        for (const Frame &f : frames)
            scene->frameLog->write(QStringLiteral("%1,%2,%3,%4,%5\n")
                                       .arg(QLatin1String(name))
                                       .arg(f.cost, 0, 'f', 3)
                                       .arg(f.draw, 0, 'f', 3)
                                       .arg(f.gap, 0, 'f', 3)
                                       .arg(f.cpu, 0, 'f', 3)
                                       .toLatin1());
        scene->frameLog->flush();
    }
}

// Runs one scenario as a benchmark of one iteration, timed by the scenario's own clock.
template <typename Run> void scenario(benchmark::State &state, const char *name, Run run)
{
    for (auto _ : state) {
        scene->toTop();
        const int first = scene->middleLine();
        const Clock::time_point start = Clock::now();
        const std::vector<Frame> frames = run();
        state.SetIterationTime(std::chrono::duration<double>(Clock::now() - start).count());
        report(state, frames, scene->middleLine() - first, name);
    }
}

// 200 notches of a mouse wheel, 20 a second: a quick, steady turn.
void wheel(benchmark::State &state)
{
    scenario(state, "wheel", [] {
        return scene->drive(200, 50, [](int) {
            const QPointF at = scene->listCentre();
            scene->post(new QWheelEvent(at, scene->window.mapToGlobal(at), QPoint(), QPoint(0, -120), Qt::NoButton,
                                        Qt::NoModifier, Qt::NoScrollPhase, false));
        });
    });
}

// Flings at the list's fastest, a new one every 0.4 s for 12 s.
void fling(benchmark::State &state)
{
    scenario(state, "fling", [] {
        const qreal fastest = scene->list.property("maximumFlickVelocity").toReal();
        return scene->drive(30, 400, [fastest](int) {
            QMetaObject::invokeMethod(&scene->list, "flick", Q_ARG(qreal, 0), Q_ARG(qreal, -fastest));
        });
    });
}

// 400 pages down, 30 a second, as a held Page Down key goes: every frame shows
// lines that were not there before.
void pages(benchmark::State &state)
{
    scenario(state, "pages", [] {
        QQuickItem &list = scene->list;
        return scene->drive(400, 33, [&list](int) {
            const qreal last = list.property("contentHeight").toReal() - list.height();
            list.setProperty("contentY", std::min(last, list.property("contentY").toReal() + list.height()));
        });
    });
}

// The scroll bar's handle dragged from the top to the bottom of its track in 4 s,
// the pointer moving 60 times a second: the view jumps about 400 lines a frame.
void dragBar(benchmark::State &state)
{
    scenario(state, "drag", [] {
        QQuickItem *bar = nullptr;
        for (QQuickItem *child : scene->list.childItems())
            if (child->inherits("QQuickScrollBar"))
                bar = child;
        if (!bar) {
            std::fprintf(stderr, "scroll_bench: the register has no scroll bar\n");
            return std::vector<Frame>();
        }
        const QQuickItem *handle = bar->property("contentItem").value<QQuickItem *>();
        const QPointF from = handle->mapToScene(QPointF(handle->width() / 2, handle->height() / 2));
        const QPointF to = bar->mapToScene(QPointF(bar->width() / 2, bar->height() - 1));
        const int moves = 240;
        QQuickWindow &window = scene->window;
        auto mouse = [&window](QEvent::Type type, QPointF at, Qt::MouseButton button, Qt::MouseButtons buttons) {
            return new QMouseEvent(type, at, at, window.mapToGlobal(at), button, buttons, Qt::NoModifier);
        };
        return scene->drive(moves + 2, 16, [=](int i) {
            if (i == 0) {
                scene->post(mouse(QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton));
            } else if (i <= moves) {
                const QPointF at = from + (to - from) * (double(i) / moves);
                scene->post(mouse(QEvent::MouseMove, at, Qt::NoButton, Qt::LeftButton));
            } else {
                scene->post(mouse(QEvent::MouseButtonRelease, to, Qt::LeftButton, Qt::NoButton));
            }
        });
    });
}

// Writes a book of 100,000 events with genbook into `file`.
bool generateBook(const QString &file)
{
    const QString genbook = QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("genbook"));
    QProcess process;
    process.start(genbook, {QStringLiteral("100000"), file});
    if (!process.waitForFinished(120000) || process.exitCode() != 0) {
        std::fprintf(stderr, "scroll_bench: %s failed\n", qPrintable(genbook));
        return false;
    }
    return true;
}

QString bookArgument(int argc, char **argv)
{
    for (int i = 1; i + 1 < argc; ++i)
        if (QByteArray(argv[i]) == "--book")
            return QString::fromLocal8Bit(argv[i + 1]);
    return {};
}

} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    const QString bookFile = bookArgument(argc, argv);

    // The measure is of the software renderer; its own folders keep the user's settings apart.
    qputenv("COINHALL_RENDERER", "software");
    qunsetenv("QT_QUICK_BACKEND");
    QTemporaryDir home;
    if (!home.isValid())
        return 1;
    for (const char *variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        qputenv(variable, QFile::encodeName(home.filePath(QString::fromLatin1(variable))));

    TimedApplication app(argc, argv);
    prepareWindowApplication();

    const QString books = home.filePath(QStringLiteral("books"));
    const QString moneyFile = QDir(books).filePath(QStringLiteral("coinhall.json"));
    QDir().mkpath(books);
    if (bookFile.isEmpty() ? !generateBook(moneyFile) : !QFile::copy(bookFile, moneyFile)) {
        std::fprintf(stderr, "scroll_bench: no book to open\n");
        return 1;
    }
    Prefs::instance()->setZoom(zoom);
    Prefs::instance()->setWelcomed(true); // no first-run help window

    // The window as runWindow makes it, with a notifier that stays quiet.
    Store store({.dir = books,
                 .notifier = std::make_shared<SilentNotifier>(),
                 .readInBackgroundFrom = 64 << 20,
                 .saveInBackgroundFrom = 20000});
    Store::setShared(&store);
    QQmlApplicationEngine engine;
    connectEngine(engine, store);
    engine.setInitialProperties(
        {{QStringLiteral("width"), windowSize.width()}, {QStringLiteral("height"), windowSize.height()}});
    engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Coinhall/Main.qml")));
    auto *window = qobject_cast<QQuickWindow *>(engine.rootObjects().value(0));
    if (!window)
        return 1;

    QQuickItem *list = nullptr;
    const bool ready = waitFor([&] {
        if (store.loading() || !window->isExposed())
            return false;
        if (QObject *rootView = window->property("rootView").value<QObject *>())
            rootView->setProperty("screen", QStringLiteral("register"));
        list = window->findChild<QQuickItem *>(QStringLiteral("register"));
        return list && list->property("count").toInt() > 0;
    });
    if (!ready) {
        std::fprintf(stderr, "scroll_bench: the register did not show\n");
        return 1;
    }
    settle(*window);

    QFile frameLog(qEnvironmentVariable("COINHALL_FRAMES"));
    const bool logging = !frameLog.fileName().isEmpty() && frameLog.open(QIODevice::WriteOnly | QIODevice::Truncate);
    Scene made{*window, *list, FrameRecorder(app, *window), logging ? &frameLog : nullptr};
    scene = &made;
    if (logging)
        frameLog.write("scenario,cost_ms,draw_ms,gap_ms,cpu_ms\n");

    benchmark::AddCustomContext("window",
                                QStringLiteral("%1x%2 (%3), zoom %4, %5 lines, %6")
                                    .arg(window->width())
                                    .arg(window->height())
                                    .arg(QGuiApplication::platformName())
                                    .arg(zoom)
                                    .arg(list->property("count").toInt())
                                    .arg(window->rendererInterface()->graphicsApi() == QSGRendererInterface::Software
                                             ? QStringLiteral("software renderer")
                                             : QStringLiteral("not the software renderer"))
                                    .toStdString());
    const std::pair<const char *, void (*)(benchmark::State &)> scenarios[] = {
        {"wheel", wheel}, {"fling", fling}, {"pages", pages}, {"drag", dragBar}};
    for (const auto &[name, run] : scenarios)
        benchmark::RegisterBenchmark(name, run)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    scene = nullptr;
    return 0;
}
