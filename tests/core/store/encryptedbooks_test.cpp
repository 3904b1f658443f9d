// Books encrypted with the owner's passphrase: what is on disk, what opens, and
// that turning it on and off takes every copy along and loses nothing.
#include "storetesting.h"

#include "store/backups.h"

#include <unistd.h>

using namespace Sealed;

namespace {

std::shared_ptr<const Secret> pass(const char *text)
{
    return std::make_shared<const Secret>(text, std::strlen(text));
}

class EncryptedBooks : public FolderTest
{
protected:
    StoreOptions options(const char *passphrase = nullptr) const
    {
        StoreOptions o{dir};
        o.notifier = std::make_shared<NoNotifier>();
        o.sealingCost = Cost::cheapest();
        if (passphrase)
            o.passphrase = pass(passphrase);
        return o;
    }
    bool sealed(const QString &path) const { return looksSealed(readAll(path)); }
};

} // namespace

TEST_F(EncryptedBooks, TurningOnSealsTheMoneyFileAndEveryCopyAndOnlyThePassphraseOpensThem)
{
    put(QStringLiteral("coinhall.json"), MoneyFile::encode(studioBook(3)));
    put(QStringLiteral("Backups/coinhall-2025-01-02.json"), MoneyFile::encode(studioBook(1)));
    put(QStringLiteral("coinhall.json.unreadable-20250101-120000"), "{ not a book");
    {
        Store store(options());
        EXPECT_FALSE(store.encrypted());
        ASSERT_TRUE(store.encryptWith(*pass("tuba solo")));
        EXPECT_EQ(store.status(), QStringLiteral("Your books are now encrypted."));
        EXPECT_TRUE(store.encrypted());
        EXPECT_TRUE(store.isPassphrase(*pass("tuba solo")));
        EXPECT_FALSE(store.isPassphrase(*pass("tuba")));
        ASSERT_TRUE(store.add(line(store.book().accounts[0], "2025-03-05T09:00:00Z", "-1", "After")));
    }
    EXPECT_TRUE(sealed(file()));
    EXPECT_TRUE(sealed(backup()));
    EXPECT_TRUE(sealed(path(QStringLiteral("Backups/coinhall-2025-01-02.json"))));
    EXPECT_EQ(readAll(path(QStringLiteral("coinhall.json.unreadable-20250101-120000"))), "{ not a book");
    EXPECT_EQ(readAll(file()).indexOf("Corner shop"), -1);

    // Without the passphrase nothing of the books is there, and nothing is written.
    const QByteArray before = readAll(file());
    {
        Store store(options());
        EXPECT_TRUE(store.needsPassphrase());
        EXPECT_TRUE(store.locked());
        EXPECT_TRUE(store.book().transactions.empty());
        EXPECT_FALSE(store.openWithPassphrase(*pass("tuba sol")));
        EXPECT_TRUE(store.locked());
        EXPECT_TRUE(store.book().accounts.empty());
        store.unlock(QStringLiteral("an account password"));
        EXPECT_TRUE(store.locked());
    }
    EXPECT_EQ(readAll(file()), before);
    EXPECT_TRUE(keptAside().size() == 1);

    Store store(options("tuba solo"));
    EXPECT_FALSE(store.locked());
    EXPECT_EQ(store.book().transactions.size(), 4u);
    EXPECT_EQ(store.book().transactions.front().payee, QStringLiteral("After"));
    // The backups open with the same key, for the list and for a restore.
    Backup old{QDate(2025, 1, 2), path(QStringLiteral("Backups/coinhall-2025-01-02.json"))};
    Backups::read(old, store.sealingKey().get());
    EXPECT_EQ(Backups::countText(old), QStringLiteral("1 transaction"));
    Backup unkeyed{QDate(2025, 1, 2), old.path};
    Backups::read(unkeyed);
    EXPECT_EQ(Backups::countText(unkeyed), QStringLiteral("encrypted"));
    ASSERT_TRUE(store.restoreBackup(QDate(2025, 1, 2)));
    EXPECT_EQ(store.book().transactions.size(), 1u);
    EXPECT_TRUE(sealed(file()));
    ASSERT_EQ(keptAside(QStringLiteral("before-restore")).size(), 1);
    EXPECT_TRUE(sealed(path(keptAside(QStringLiteral("before-restore")).first())));

    // Off again: every copy plain and whole, the same money file inside.
    ASSERT_TRUE(store.decrypt());
    EXPECT_EQ(store.status(), QStringLiteral("Your books are no longer encrypted."));
    for (const QString &copy : {file(), backup(), path(QStringLiteral("Backups/coinhall-2025-01-02.json")),
                                path(keptAside(QStringLiteral("before-restore")).first())})
        EXPECT_FALSE(decodeFile(copy).accounts.empty()) << copy.toStdString();
    EXPECT_EQ(decodeFile(file()).transactions.size(), 1u);
}

TEST_F(EncryptedBooks, ChangingThePassphraseReencryptsAndASwitchCutShortIsFinishedAtOpening)
{
    {
        Store store(options());
        ASSERT_TRUE(store.encryptWith(*pass("first")));
        ASSERT_TRUE(store.encryptWith(*pass("second")));
        EXPECT_EQ(store.status(), QStringLiteral("Your passphrase was changed."));
    }
    EXPECT_FALSE(Store(options("first")).book().accounts.size() > 0);
    // A crash after the money file and before this backup: a plain copy beside sealed books.
    put(QStringLiteral("Backups/coinhall-2025-01-02.json"), MoneyFile::encode(studioBook(2)));
    {
        Store store(options("second"));
        EXPECT_EQ(store.book().accounts.size(), 2u);
        EXPECT_TRUE(sealed(path(QStringLiteral("Backups/coinhall-2025-01-02.json"))));
        EXPECT_TRUE(sealed(backup()));
    }
    // A big book is read off the window's thread once the passphrase has opened it.
    StoreOptions big = options();
    big.readInBackgroundFrom = 1;
    Store store(std::move(big));
    EXPECT_FALSE(store.openWithPassphrase(*pass("first")));
    ASSERT_TRUE(store.openWithPassphrase(*pass("second")));
    EXPECT_TRUE(store.loading());
    ASSERT_TRUE(waitFor([&] { return !store.loading(); }));
    EXPECT_EQ(store.book().accounts.size(), 2u);
    EXPECT_FALSE(store.locked());
}

TEST_F(EncryptedBooks, ADamagedEncryptedFileIsKeptAsItWasAndTheNewBookStaysEncrypted)
{
    {
        Store store(options());
        ASSERT_TRUE(store.encryptWith(*pass("pw")));
    }
    QByteArray damaged = readAll(file());
    damaged[damaged.size() - 3] = char(damaged[damaged.size() - 3] ^ 1);
    put(QStringLiteral("coinhall.json"), damaged);

    Store store(options("pw"));
    EXPECT_FALSE(store.locked());
    ASSERT_EQ(keptAside().size(), 1);
    EXPECT_EQ(readAll(path(keptAside().first())), damaged);
    EXPECT_EQ(store.status(),
              QStringLiteral("Your money file could not be read. It was kept as %1.").arg(keptAside().first()));
    EXPECT_TRUE(store.encrypted());
    ASSERT_TRUE(store.add(line(store.book().accounts[0], "2025-03-05T09:00:00Z", "-1")));
    EXPECT_TRUE(sealed(file()));
}

// After the books are opened nothing of the passphrase is left in the process: it came
// through a pipe into locked memory, and the derivation's copies were wiped. The test
// keeps it only masked, so its own copy is never what is found.
TEST_F(EncryptedBooks, NoCopyOfThePassphraseIsLeftInMemoryAfterOpening)
{
    constexpr unsigned char mask = 0x5a;
    // A passphrase of 36 letters, kept masked even in this file.
    const QByteArray masked("\x2b\x2f\x33\x3f\x2e\x7a\x37\x35\x34\x3d\x35\x35\x29\x3f\x7a\x6d\x7a\x2e\x3b\x37\x38\x35"
                            "\x2f\x28\x33\x34\x3f\x29\x7a\x3b\x2e\x7a\x3e\x3b\x2d\x34");
    const auto unmasked = [&] {
        Secret s(std::size_t(masked.size()));
        for (qsizetype i = 0; i < masked.size(); ++i)
            s.data()[i] = static_cast<unsigned char>(masked[i] ^ mask);
        return s;
    };
    {
        Store store(options());
        ASSERT_TRUE(store.encryptWith(unmasked()));
    }
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    for (const char m : masked) {
        volatile char c = char(m ^ mask);
        ASSERT_EQ(::write(pipe[1], const_cast<const char *>(&c), 1), 1);
        c = 0;
    }
    ASSERT_EQ(::write(pipe[1], "\n", 1), 1);
    ::close(pipe[1]);
    StoreOptions o = options();
    o.passphrase = std::make_shared<const Secret>(*Secret::readLine(pipe[0]));
    ::close(pipe[0]);
    Store store(std::move(o));
    ASSERT_FALSE(store.locked());

    // Every readable mapping of the process, read through /proc/self/mem.
    QFile maps(QStringLiteral("/proc/self/maps"));
    ASSERT_TRUE(maps.open(QIODevice::ReadOnly));
    const QList<QByteArray> regions = maps.readAll().split('\n');
    QFile mem(QStringLiteral("/proc/self/mem"));
    ASSERT_TRUE(mem.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
    qint64 scanned = 0;
    QByteArray chunk;
    for (const QByteArray &region : regions) {
        const QList<QByteArray> fields = region.simplified().split(' ');
        if (fields.size() < 2 || !fields[1].startsWith('r') || region.contains("[vvar]"))
            continue;
        const QList<QByteArray> range = fields[0].split('-');
        const quint64 from = range[0].toULongLong(nullptr, 16), to = range[1].toULongLong(nullptr, 16);
        // Terabytes of address space the sanitizers reserve (their shadow) hold no data
        // of ours, and could not be read into one array.
        if (to - from > (quint64(1) << 30) || !mem.seek(qint64(from)))
            continue;
        chunk = mem.read(qint64(to - from));
        scanned += chunk.size();
        const auto *bytes = reinterpret_cast<const unsigned char *>(chunk.constData());
        for (qsizetype i = 0; i + masked.size() <= chunk.size(); ++i) {
            qsizetype same = 0;
            while (same < masked.size() && (bytes[i + same] ^ mask) == static_cast<unsigned char>(masked[same]))
                ++same;
            ASSERT_LT(same, masked.size()) << "found in " << region.toStdString();
        }
    }
    EXPECT_GT(scanned, 1 << 20);
}

TEST_F(EncryptedBooks, AHundredThousandLinesComeBackByteForByte)
{
    const QByteArray plain = MoneyFile::encode(studioBook(100000));
    put(QStringLiteral("coinhall.json"), plain);
    {
        Store store(options());
        ASSERT_TRUE(store.encryptWith(*pass("long book")));
    }
    EXPECT_EQ(readAll(file()).indexOf("Corner shop"), -1);
    const Store store(options("long book"));
    ASSERT_EQ(store.book().transactions.size(), 100000u);
    EXPECT_EQ(MoneyFile::encode(store.book()), plain);
}
