#pragma once

#include <QString>
#include <QStringList>

#include <functional>

// Which of Qt Quick's renderers draws the window, and why.
//
// Where the only OpenGL is a software rasteriser (Mesa's llvmpipe: virtual machines,
// remote desktops, machines without a graphics driver), Qt Quick's own software renderer
// draws the same window with a fraction of the start-up time and memory.
struct RendererChoice
{
    enum Kind { automatic, software, gpu };
    Kind kind = automatic; // automatic: Qt's own choice is left alone
    QString why;
};

// What the system offers, asked only when needed: whether a render node of a graphics
// card is there at all, and the OpenGL renderer's name (empty when none works).
struct GraphicsProbe
{
    std::function<bool()> hasRenderNode;
    std::function<QString()> openGLRenderer;
};

// The choice for `asked` (the --renderer value, else COINHALL_RENDERER: "software",
// "gpu" or empty); `qtForced` when QT_QUICK_BACKEND or QSG_RHI_BACKEND already decide.
RendererChoice decideRenderer(const QString &asked, bool qtForced, const GraphicsProbe &probe);

// The value of "--renderer" among `arguments`, empty when absent.
QString rendererArgument(const QStringList &arguments);

// Decides from the process's arguments, environment and graphics, and sets the choice
// for every Qt Quick window to come. Call once the QGuiApplication exists, before any
// window. With COINHALL_DEBUG set, says on standard error what was chosen and why.
void chooseRenderer();
