#include "window.h"

#include "store/store.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQmlEngine>
#include <QQuickStyle>
#include <QUrl>
#include <QtQml/qqmlextensionplugin.h>

Q_IMPORT_QML_PLUGIN(CoinhallPlugin)

namespace {

// The type faces embedded at build time; a face that is missing falls back to the system font.
void registerFonts()
{
    for (const char *face : {":/fonts/Unbounded.ttf", ":/fonts/Unbounded_700Bold.ttf", ":/fonts/Manrope.ttf",
                             ":/fonts/Manrope-SemiBold.ttf", ":/fonts/Manrope-Bold.ttf",
                             ":/fonts/MaterialIcons-Regular.ttf"})
        QFontDatabase::addApplicationFont(QString::fromLatin1(face));
}

} // namespace

int runWindow(int &argc, char **argv, const QString &dataDir)
{
    QGuiApplication app(argc, argv);
    QGuiApplication::setOrganizationName(QStringLiteral("QFS"));
    QGuiApplication::setApplicationName(QStringLiteral("Coinhall"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("QFS Coinhall"));
    QQuickStyle::setStyle(QStringLiteral("Basic"));
    registerFonts();

    Store store({dataDir});
    Store::setShared(&store);

    QQmlApplicationEngine engine;
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    qmlRegisterSingletonInstance("Coinhall", 1, 0, "Store", &store);
    engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Coinhall/Main.qml")));
    if (engine.rootObjects().isEmpty())
        return 1;
    return QGuiApplication::exec();
}
