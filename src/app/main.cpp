// Coinhall: a private bookkeeping program for freelancers, musicians and one-person businesses.
#include "commandline.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("QFS"));
    QCoreApplication::setApplicationName(QStringLiteral("Coinhall"));
    const QStringList arguments = app.arguments().mid(1);

    if (wantsCommandLine(arguments))
        return runCommandLine(arguments);

    std::fputs("The Coinhall window is not part of this build yet; see coinhall --help.\n", stderr);
    return 0;
}
