#include <QCoreApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>

// Every test program runs in the C locale with US English texts, New York time
// unless a test says otherwise, and private data and settings folders, so that
// nothing depends on the machine or touches the user's real files.
int main(int argc, char **argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    QTemporaryDir home;
    qputenv("XDG_DATA_HOME", (home.path() + QStringLiteral("/data")).toUtf8());
    qputenv("XDG_CONFIG_HOME", (home.path() + QStringLiteral("/config")).toUtf8());
    if (qEnvironmentVariableIsEmpty("TZ"))
        qputenv("TZ", "America/New_York");
    qputenv("LANG", "en_US.UTF-8");
    qputenv("LC_ALL", "en_US.UTF-8");
    std::setlocale(LC_ALL, "C");
    QCoreApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
