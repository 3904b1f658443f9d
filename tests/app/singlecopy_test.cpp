// One running copy per user and books: a later start finds the first and asks it to come forward.
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

namespace {

// A socket name no real Coinhall uses.
QString privateName()
{
    return QStringLiteral("coinhall-test-") + QUuid::createUuid().toString(QUuid::Id128);
}

// A later start, as another process would make it: on its own thread, blocking.
std::future<bool> claimElsewhere(const QString &name)
{
    return std::async(std::launch::async, [name] { return SingleCopy(name).claim(); });
}

TEST(SingleCopy, TheFirstCopyClaimsAndALaterOneAsksItToRaiseItsWindow)
{
    const QString name = privateName();
    SingleCopy first(name);
    QSignalSpy raised(&first, &SingleCopy::raiseRequested);
    ASSERT_TRUE(first.claim());

    for (int start = 1; start <= 2; ++start) {
        std::future<bool> later = claimElsewhere(name);
        EXPECT_TRUE(raised.wait(5000));
        EXPECT_FALSE(later.get());
        EXPECT_EQ(raised.count(), start);
    }
}

TEST(SingleCopy, BooksInAnotherFolderHaveACopyOfTheirOwn)
{
    const QString folder = QDir::temp().filePath(QStringLiteral("books"));
    EXPECT_EQ(SingleCopy::defaultName(folder), SingleCopy::defaultName(folder + QStringLiteral("/.")));
    EXPECT_NE(SingleCopy::defaultName(folder), SingleCopy::defaultName(folder + QStringLiteral("2")));
    EXPECT_NE(SingleCopy::defaultName(folder), SingleCopy::defaultName());
}

TEST(SingleCopy, ASocketLeftByACopyThatDiedIsTakenOver)
{
    // A bound socket file that nobody listens on, as a crashed copy leaves it.
    const QString name = privateName();
    const QByteArray path = QFile::encodeName(QDir::tempPath() + QLatin1Char('/') + name);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(size_t(path.size()), sizeof(address.sun_path));
    std::copy(path.begin(), path.end(), address.sun_path);
    const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(::bind(fd, reinterpret_cast<sockaddr *>(&address), sizeof(address)), 0);
    ::close(fd);
    ASSERT_TRUE(QFile::exists(QFile::decodeName(path)));

    SingleCopy copy(name);
    QSignalSpy raised(&copy, &SingleCopy::raiseRequested);
    EXPECT_TRUE(copy.claim());

    std::future<bool> later = claimElsewhere(name);
    EXPECT_TRUE(raised.wait(5000));
    EXPECT_FALSE(later.get());
}

} // namespace
