// Runs the tst_*.qml files against the real QML module, with a Store and settings of
// their own in a temporary folder. With COINHALL_TEST_LOCKED set, the Store starts locked
// and checks its owner through a private PAM configuration that denies everyone until a
// test switches it (TestHooks.usePamModule): the machine's /etc/pam.d is never read.
#include "help/helptexts.h"
#include "platform/pamauthenticator.h"
#include "store/store.h"

#include <QDir>
#include <QFile>
#include <QQmlEngine>
#include <QQuickStyle>
#include <QSettings>
#include <QTemporaryDir>
#include <QtQml/qqmlextensionplugin.h>
#include <QtQuickTest/quicktest.h>

Q_IMPORT_QML_PLUGIN(CoinhallPlugin)

// What the tests may change about their surroundings; QML: `import CoinhallTest`.
class TestHooks : public QObject
{
    Q_OBJECT

public:
    QString pamDir;

    // Makes the private PAM configuration run `module` ("pam_permit.so", "pam_deny.so")
    // for both authentication and the account check.
    Q_INVOKABLE bool usePamModule(const QString &module) const
    {
        QFile file(pamDir + QStringLiteral("/coinhall"));
        const QByteArray name = module.toUtf8();
        return file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
               file.write("auth required " + name + "\naccount required " + name + "\n") > 0;
    }
};

class Setup : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void applicationAvailable()
    {
        qputenv("XDG_DATA_HOME", (m_home.path() + QStringLiteral("/data")).toUtf8());
        qputenv("XDG_CONFIG_HOME", (m_home.path() + QStringLiteral("/config")).toUtf8());
        QCoreApplication::setOrganizationName(AppInfo::organizationName());
        QCoreApplication::setApplicationName(AppInfo::applicationName());
        QQuickStyle::setStyle(QStringLiteral("Basic"));

        m_hooks.pamDir = m_home.path() + QStringLiteral("/pam");
        QDir().mkpath(m_hooks.pamDir);
        StoreOptions options{m_home.path() + QStringLiteral("/books")};
        if (qEnvironmentVariableIsSet("COINHALL_TEST_LOCKED")) {
            QSettings(AppInfo::organizationName(), AppInfo::applicationName())
                .setValue(QStringLiteral("requireUnlock"), true);
            m_hooks.usePamModule(QStringLiteral("pam_deny.so"));
            options.authenticator = std::make_shared<PamAuthenticator>(QStringLiteral("coinhall"), m_hooks.pamDir);
        }
        // COINHALL_TEST_ENCRYPTED: books encrypted with the passphrase "tuba solo", cheaply.
        if (qEnvironmentVariableIsSet("COINHALL_TEST_ENCRYPTED")) {
            options.sealingCost = Sealed::Cost::cheapest();
            if (!Store(options).encryptWith(Sealed::Secret("tuba solo", 9)))
                qFatal("could not encrypt the test's books");
        }
        m_store = std::make_unique<Store>(options);
        Store::setShared(m_store.get());
    }
    void qmlEngineAvailable(QQmlEngine *engine)
    {
        engine->addImportPath(QStringLiteral("qrc:/qt/qml"));
        qmlRegisterSingletonInstance("Coinhall", 1, 0, "Store", m_store.get());
        qmlRegisterSingletonInstance("CoinhallTest", 1, 0, "TestHooks", &m_hooks);
    }

private:
    QTemporaryDir m_home;
    TestHooks m_hooks;
    std::unique_ptr<Store> m_store;
};

QUICK_TEST_MAIN_WITH_SETUP(coinhall, Setup)

#include "tst_main.moc"
