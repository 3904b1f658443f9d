// Coinhall: a private bookkeeping program for freelancers, musicians and one-person businesses.
#include "commandline/commandline.h"

#include "help/helptexts.h"
#include "help/selftest.h"
#include "render.h"
#include "window.h"

#include <QCoreApplication>

int main(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));

    // Before anything else: no application object, no Store, no window, no user folder.
    if (wantsSelfTest(arguments))
        return CoinhallSelfTest::run(stdout);

    if (wantsCommandLine(arguments)) {
        QCoreApplication app(argc, argv);
        QCoreApplication::setOrganizationName(AppInfo::organizationName());
        QCoreApplication::setApplicationName(AppInfo::applicationName());
        return runCommandLine(arguments);
    }

    const qsizetype render = arguments.indexOf(QStringLiteral("--render-screens"));
    if (render >= 0 && render + 1 < arguments.size())
        return renderScreens(argc, argv, arguments.at(render + 1));

    return runWindow(argc, argv, dataDirArgument(arguments));
}
