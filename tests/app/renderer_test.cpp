// The window's renderer: the user's word first, then what the system's OpenGL is.
#include "commandline/commandline.h"
#include "renderer.h"

#include <gtest/gtest.h>

namespace {

// A system with or without a render node and this OpenGL renderer; counts the probes.
struct System
{
    bool node = true;
    QString renderer;
    int probes = 0;
    GraphicsProbe probe()
    {
        return {[this] { return node; },
                [this] {
                    ++probes;
                    return renderer;
                }};
    }
};

} // namespace

TEST(Renderer, SoftwareWhereOpenGLIsDrawnInSoftwareOrMissingAndTheGraphicsCardElsewhere)
{
    const struct
    {
        bool node;
        const char *renderer;
        RendererChoice::Kind kind;
    } cases[] = {
        {true, "llvmpipe (LLVM 15.0.6, 256 bits)", RendererChoice::software},
        {true, "Software Rasterizer", RendererChoice::software},
        {true, "", RendererChoice::software}, // no context could be made
        {true, "Mesa Intel(R) UHD Graphics 620 (KBL GT2)", RendererChoice::gpu},
        {true, "AMD Radeon RX 6600 (radeonsi, navi23, LLVM 15.0.6, DRM 3.49)", RendererChoice::gpu},
    };
    for (const auto &c : cases) {
        System system{c.node, QString::fromLatin1(c.renderer)};
        const RendererChoice choice = decideRenderer({}, false, system.probe());
        EXPECT_EQ(choice.kind, c.kind) << c.renderer;
        EXPECT_FALSE(choice.why.isEmpty());
    }

    // Without a render node OpenGL is not even loaded to ask.
    System headless{false, QStringLiteral("Mesa Intel(R) UHD Graphics 620")};
    EXPECT_EQ(decideRenderer({}, false, headless.probe()).kind, RendererChoice::software);
    EXPECT_EQ(headless.probes, 0);
}

TEST(Renderer, TheUsersWordAndQtsOwnVariablesComeFirst)
{
    System llvmpipe{true, QStringLiteral("llvmpipe")};
    EXPECT_EQ(decideRenderer(QStringLiteral("gpu"), true, llvmpipe.probe()).kind, RendererChoice::gpu);
    EXPECT_EQ(decideRenderer(QStringLiteral("software"), false, llvmpipe.probe()).kind, RendererChoice::software);
    EXPECT_EQ(decideRenderer({}, true, llvmpipe.probe()).kind, RendererChoice::automatic);
    EXPECT_EQ(llvmpipe.probes, 0);

    // On the command line: the value is read for the window, and a wrong one is a usage error.
    EXPECT_EQ(rendererArgument({"--data-dir", "/tmp/b", "--renderer", "gpu"}), "gpu");
    EXPECT_EQ(rendererArgument({"--renderer"}), "");
    EXPECT_FALSE(wantsCommandLine({"--renderer", "software", "--data-dir", "/tmp/b"}));
    EXPECT_TRUE(wantsCommandLine({"--renderer", "vulkan"}));
    EXPECT_TRUE(wantsCommandLine({"--renderer"}));
}
