#include "singlecopy.h"

#include <QCryptographicHash>
#include <QDir>
#include <QLocalSocket>

#include <unistd.h>

namespace {

// "raise", or "raise <what to open>", on one line.
const QByteArray raiseRequest = QByteArrayLiteral("raise");
constexpr int answerWaitMs = 1000;

} // namespace

SingleCopy::SingleCopy(QString name, QObject *parent)
    : QObject(parent)
    , m_name(std::move(name))
{
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket *socket = m_server.nextPendingConnection()) {
            connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
            connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
                if (!socket->canReadLine())
                    return;
                const QByteArray line = socket->readLine().trimmed();
                if (line == raiseRequest || line.startsWith(raiseRequest + ' '))
                    Q_EMIT raiseRequested(QString::fromUtf8(line.mid(raiseRequest.size()).trimmed()));
                socket->disconnectFromServer();
            });
        }
    });
}

QString SingleCopy::defaultName(const QString &dataDir)
{
    const QString name = QStringLiteral("qfs-coinhall-%1").arg(::getuid());
    if (dataDir.isEmpty())
        return name;
    const QByteArray path = QDir(dataDir).absolutePath().toUtf8();
    return name + u'-' +
           QString::fromLatin1(QCryptographicHash::hash(path, QCryptographicHash::Sha256).toHex().left(12));
}

bool SingleCopy::claim(const QString &open)
{
    if (askRunningCopy(open))
        return false;
    // Nobody answered: a socket left behind by a copy that died is taken over.
    QLocalServer::removeServer(m_name);
    if (m_server.listen(m_name))
        return true;
    // Another copy started at the same moment and won the name.
    return !askRunningCopy(open);
}

bool SingleCopy::askRunningCopy(const QString &open)
{
    QLocalSocket socket;
    socket.connectToServer(m_name);
    if (!socket.waitForConnected(answerWaitMs))
        return false;
    socket.write(open.isEmpty() ? raiseRequest + '\n' : raiseRequest + ' ' + open.toUtf8() + '\n');
    socket.waitForBytesWritten(answerWaitMs);
    // The first copy hangs up once it has read the request.
    socket.waitForDisconnected(answerWaitMs);
    return true;
}
