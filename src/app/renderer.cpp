#include "renderer.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QQuickWindow>

#include <cstdio>

namespace {

bool isSoftwareRasteriser(const QString &renderer)
{
    for (const char *name : {"llvmpipe", "softpipe", "swrast", "software rasterizer", "lavapipe"})
        if (renderer.contains(QLatin1String(name), Qt::CaseInsensitive))
            return true;
    return false;
}

bool hasRenderNode()
{
    return !QDir(QStringLiteral("/dev/dri")).entryList({QStringLiteral("renderD*")}, QDir::System).isEmpty();
}

// Makes a throw-away OpenGL context to read its renderer's name.
QString openGLRenderer()
{
    QOpenGLContext context;
    if (!context.create())
        return {};
    QOffscreenSurface surface;
    surface.setFormat(context.format());
    surface.create();
    if (!surface.isValid() || !context.makeCurrent(&surface))
        return {};
    const auto *name = reinterpret_cast<const char *>(context.functions()->glGetString(GL_RENDERER));
    QString renderer = name ? QString::fromLatin1(name) : QString();
    context.doneCurrent();
    return renderer;
}

} // namespace

RendererChoice decideRenderer(const QString &asked, bool qtForced, const GraphicsProbe &probe)
{
    if (asked == QLatin1String("software"))
        return {RendererChoice::software, QStringLiteral("asked for")};
    if (asked == QLatin1String("gpu"))
        return {RendererChoice::gpu, QStringLiteral("asked for")};
    if (qtForced)
        return {RendererChoice::automatic, QStringLiteral("QT_QUICK_BACKEND or QSG_RHI_BACKEND decides")};
    // Without a render node no graphics card can be reached, and OpenGL could only be
    // a software rasteriser: no need to load it to find out.
    if (!probe.hasRenderNode())
        return {RendererChoice::software, QStringLiteral("no graphics card here (no render node in /dev/dri)")};
    const QString renderer = probe.openGLRenderer();
    if (renderer.isEmpty())
        return {RendererChoice::software, QStringLiteral("OpenGL does not work here")};
    if (isSoftwareRasteriser(renderer))
        return {RendererChoice::software, QStringLiteral("OpenGL here is %1, a software rasteriser").arg(renderer)};
    return {RendererChoice::gpu, QStringLiteral("OpenGL here is %1").arg(renderer)};
}

QString rendererArgument(const QStringList &arguments)
{
    const qsizetype at = arguments.indexOf(QStringLiteral("--renderer"));
    return at >= 0 && at + 1 < arguments.size() ? arguments.at(at + 1) : QString();
}

void chooseRenderer()
{
    QElapsedTimer clock;
    clock.start();
    QString asked = rendererArgument(QCoreApplication::arguments());
    if (asked.isEmpty())
        asked = qEnvironmentVariable("COINHALL_RENDERER");
    const bool qtForced = qEnvironmentVariableIsSet("QT_QUICK_BACKEND") || qEnvironmentVariableIsSet("QSG_RHI_BACKEND");
    const RendererChoice choice = decideRenderer(asked, qtForced, {hasRenderNode, openGLRenderer});
    if (choice.kind == RendererChoice::software)
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    else if (choice.kind == RendererChoice::gpu)
        QQuickWindow::setGraphicsApi(QSGRendererInterface::OpenGL);
    if (qEnvironmentVariableIsSet("COINHALL_DEBUG")) {
        const char *what = choice.kind == RendererChoice::software ? "the software renderer"
                           : choice.kind == RendererChoice::gpu    ? "the graphics card"
                                                                   : "Qt's own choice of renderer";
        std::fprintf(stderr, "Coinhall: drawing with %s: %s (decided in %lld ms)\n", what, qPrintable(choice.why),
                     static_cast<long long>(clock.elapsed()));
    }
}
