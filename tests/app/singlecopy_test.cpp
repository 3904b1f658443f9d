// One running copy per user and books: a later start finds the first and asks it to come
// forward. Two real window processes do the same in processes_test.cpp.
#include "singlecopy.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QUuid>

#include <gtest/gtest.h>

#include <future>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

TEST(SingleCopy, OneCopyPerBooksTakesOverADeadOnesSocketAndIsAskedToRaise)
{
    // A bound socket file that nobody listens on, as a crashed copy leaves it.
    const QString name = QStringLiteral("coinhall-test-") + QUuid::createUuid().toString(QUuid::Id128);
    const QByteArray path = QFile::encodeName(QDir::tempPath() + QLatin1Char('/') + name);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(size_t(path.size()), sizeof(address.sun_path));
    std::copy(path.begin(), path.end(), address.sun_path);
    const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(::bind(fd, reinterpret_cast<sockaddr *>(&address), sizeof(address)), 0);
    ::close(fd);

    SingleCopy first(name);
    QSignalSpy raised(&first, &SingleCopy::raiseRequested);
    ASSERT_TRUE(first.claim());
    for (int start = 1; start <= 2; ++start) {
        // A later start, as another process makes it: on its own thread, blocking.
        const QString open = start == 2 ? QStringLiteral("money-in") : QString();
        std::future<bool> later =
            std::async(std::launch::async, [name, open] { return SingleCopy(name).claim(open); });
        EXPECT_TRUE(raised.wait(5000));
        EXPECT_EQ(std::tuple(later.get(), raised.count()), std::tuple(false, start));
        EXPECT_EQ(raised.last().value(0).toString(), open);
    }

    // Books in another folder have a copy of their own.
    const QString folder = QDir::temp().filePath(QStringLiteral("books"));
    EXPECT_EQ(SingleCopy::defaultName(folder), SingleCopy::defaultName(folder + QStringLiteral("/.")));
    EXPECT_NE(SingleCopy::defaultName(folder), SingleCopy::defaultName(folder + QStringLiteral("2")));
    EXPECT_NE(SingleCopy::defaultName(folder), SingleCopy::defaultName());
}
