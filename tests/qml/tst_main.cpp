// Runs the tst_*.qml files against the real QML module, with a Store of their own
// on a temporary folder, offscreen.
#include "store/store.h"

#include <QQmlEngine>
#include <QTemporaryDir>
#include <QtQml/qqmlextensionplugin.h>
#include <QtQuickTest/quicktest.h>

Q_IMPORT_QML_PLUGIN(CoinhallPlugin)

class Setup : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void applicationAvailable()
    {
        qputenv("XDG_DATA_HOME", (m_home.path() + QStringLiteral("/data")).toUtf8());
        qputenv("XDG_CONFIG_HOME", (m_home.path() + QStringLiteral("/config")).toUtf8());
        m_store = std::make_unique<Store>(StoreOptions{m_home.path() + QStringLiteral("/books")});
    }
    void qmlEngineAvailable(QQmlEngine *engine)
    {
        engine->addImportPath(QStringLiteral("qrc:/qt/qml"));
        qmlRegisterSingletonInstance("Coinhall", 1, 0, "Store", m_store.get());
    }

private:
    QTemporaryDir m_home;
    std::unique_ptr<Store> m_store;
};

QUICK_TEST_MAIN_WITH_SETUP(coinhall, Setup)

#include "tst_main.moc"
