// Coinhall: a private bookkeeping program for freelancers, musicians and one-person businesses.
#include "commandline/commandline.h"

#include "help/helptexts.h"
#include "help/selftest.h"
#include "render.h"
#include "window.h"

#include <QCoreApplication>
#include <QGuiApplication>

#include <memory>

int main(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));

    // Before anything else: no application object, no Store, no window, no user folder.
    if (wantsSelfTest(arguments))
        return CoinhallSelfTest::run(stdout);

    if (wantsCommandLine(arguments)) {
        // Drawing the year's report needs fonts, hence a GUI application; it needs no
        // display, so it runs on the offscreen platform, also on a machine without one.
        std::unique_ptr<QCoreApplication> app;
        if (arguments.contains(QStringLiteral("--pdf"))) {
            qputenv("QT_QPA_PLATFORM", "offscreen");
            app = std::make_unique<QGuiApplication>(argc, argv);
        } else {
            app = std::make_unique<QCoreApplication>(argc, argv);
        }
        QCoreApplication::setOrganizationName(AppInfo::organizationName());
        QCoreApplication::setApplicationName(AppInfo::applicationName());
        return runCommandLine(arguments);
    }

    const qsizetype render = arguments.indexOf(QStringLiteral("--render-screens"));
    if (render >= 0 && render + 1 < arguments.size())
        return renderScreens(argc, argv, arguments.at(render + 1));

    return runWindow(argc, argv, dataDirArgument(arguments));
}
