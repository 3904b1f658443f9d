// The Store's life cycle: finding its folder, reading the money file, saving,
// backups, the lock file and the unlock step.
#include "storetesting.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

#include <thread>

namespace {

using StoreStart = FolderTest;

} // namespace

TEST_F(StoreStart, EmptyFolderGivesTwoAccountsAndWritesNothing)
{
    Store store({dir});
    ASSERT_EQ(store.book().accounts.size(), 2u);
    EXPECT_EQ(store.book().accounts[0].name, "Main checking");
    EXPECT_EQ(store.book().accounts[0].kind, AccountKind::checking);
    EXPECT_EQ(store.book().accounts[1].name, "Savings");
    EXPECT_EQ(store.book().accounts[1].kind, AccountKind::savings);
    EXPECT_EQ(store.book().categories, Category::defaults());
    EXPECT_TRUE(store.status().isEmpty());
    EXPECT_TRUE(store.writable());
    EXPECT_FALSE(store.locked());
    // A first run writes the file only with the user's first change, so there is nothing to back up.
    EXPECT_FALSE(QFile::exists(file()));
    EXPECT_TRUE(QDir(path("Backups")).isEmpty());

    EXPECT_TRUE(store.add(line(store.book().accounts[0], "2025-03-04T09:00:00Z", "-12.5")));
    EXPECT_EQ(decodeFile(file()), store.book());
}

TEST_F(StoreStart, ExistingFileIsReadAndBackedUpOncePerDay)
{
    const Book saved = studioBook();
    put("coinhall.json", MoneyFile::encode(saved));
    {
        Store store({dir});
        EXPECT_EQ(store.book(), saved);
        EXPECT_TRUE(store.loadError().isEmpty());
        EXPECT_TRUE(store.add(line(store.book().accounts[0], "2025-03-04T09:00:00Z", "-12.5")));
    }
    EXPECT_EQ(readAll(backup()), MoneyFile::encode(saved));

    // The day's second start keeps the backup of the file as it was before the day's changes.
    Store again({dir});
    EXPECT_EQ(again.book().transactions.size(), 1u);
    EXPECT_EQ(readAll(backup()), MoneyFile::encode(saved));
    EXPECT_EQ(QDir(path("Backups")).entryList(QDir::Files).size(), 1);
}

// A large book is read and saved on other threads. Read: the Store starts empty and
// loading, then holds the Book, tells its observers and makes the day's backup. Saved:
// changes land in order, the last is in the file once the Store closes, and a write that
// fails later says so in the status line.
TEST_F(StoreStart, ALargeBookIsReadAndSavedInTheBackground)
{
    const Book saved = studioBook(2000);
    put("coinhall.json", MoneyFile::encode(saved));
    Book last;
    {
        Store store({.dir = dir, .readInBackgroundFrom = 0, .saveInBackgroundFrom = 0});
        QSignalSpy changed(&store, &Store::bookChanged);
        EXPECT_TRUE(store.loading() && store.book().accounts.empty() && !QFile::exists(backup()));
        ASSERT_TRUE(waitFor([&] { return !store.loading(); }));
        EXPECT_EQ(store.book(), saved);
        EXPECT_EQ(readAll(backup()), MoneyFile::encode(saved));
        EXPECT_EQ(std::pair(changed.count() > 0, store.loadProgress()), std::pair(true, 1.0));
        for (int i = 0; i < 20; ++i)
            EXPECT_TRUE(store.add(line(store.book().accounts[0], "2025-03-04T09:00:00Z", "-1")));
        last = store.book();
    }
    EXPECT_EQ(decodeFile(file()), last);

    Store store({.dir = dir, .saveInBackgroundFrom = 0});
    QFile::remove(file());
    QDir().mkpath(file()); // nothing can be written there
    EXPECT_TRUE(store.add(line(store.book().accounts[0], "2025-03-05T09:00:00Z", "-2")));
    store.finishSaving();
    EXPECT_EQ(store.status(), "Could not save: Is a directory");
}

// Today's backup is one of the thirty kept; the oldest names go.
TEST_F(StoreStart, CrowdedBackupsKeepTheThirtyNewestTodaysAmongThem)
{
    QStringList names;
    for (int i = 0; i < 35; ++i) {
        names << QStringLiteral("coinhall-%1.json").arg(QDate(2024, 1, 1).addDays(i).toString(Qt::ISODate));
        put("Backups/" + names.last(), "{}");
    }
    put("coinhall.json", MoneyFile::encode(studioBook()));
    Store store({dir});
    EXPECT_EQ(QDir(path("Backups")).entryList(QDir::Files, QDir::Name), names.mid(6) << backupName());
}

TEST_F(StoreStart, OlderFolderNameIsCopied)
{
    const QByteArray oldData = qgetenv("XDG_DATA_HOME");
    qputenv("XDG_DATA_HOME", temp.path().toUtf8());
    const QString older = temp.path() + QStringLiteral("/Quillfern Coinhall");
    QDir().mkpath(older + QStringLiteral("/Backups"));
    const Book saved = studioBook();
    writeAll(older + QStringLiteral("/coinhall.json"), MoneyFile::encode(saved));
    writeAll(older + QStringLiteral("/Backups/coinhall-2024-01-01.json"), "{}");

    EXPECT_EQ(Store::defaultDir(), dir);
    Store store;
    qputenv("XDG_DATA_HOME", oldData);
    EXPECT_EQ(store.dir(), dir);
    EXPECT_EQ(store.book(), saved);
    EXPECT_TRUE(QFile::exists(path("Backups/coinhall-2024-01-01.json")));
    EXPECT_TRUE(QFile::exists(older + QStringLiteral("/coinhall.json"))); // the older folder is left as it was
}

TEST_F(StoreStart, AMoneyFileFromANewerCoinhallIsReadButNeverRewritten)
{
    Book newer = studioBook();
    newer.version = MoneyFile::version + 1;
    // A newer Coinhall may keep what this one does not know; a save from here would drop it.
    const QByteArray bytes =
        MoneyFile::encode(newer).replace("\"version\": 2", "\"version\": 2, \"wishes\": [\"boat\"]");
    ASSERT_TRUE(bytes.contains("wishes"));
    put("coinhall.json", bytes);

    Store store({dir});
    EXPECT_EQ(store.book(), newer);
    EXPECT_FALSE(store.writable());
    EXPECT_EQ(store.status(), "This money file was written by a newer Coinhall, so changes made here are not saved.");
    EXPECT_EQ(store.add(line(store.book().accounts[0], "2025-03-04T09:00:00Z", "-1")).error,
              "Could not save: this money file was written by a newer Coinhall");
    EXPECT_EQ(readAll(file()), bytes);
    EXPECT_FALSE(QFile::exists(backup()));
}

TEST_F(StoreStart, SecondStoreOnOneFolderWritesNothing)
{
    auto first = std::make_unique<Store>(StoreOptions{dir});
    EXPECT_TRUE(first->add(line(first->book().accounts[0], "2025-03-01T09:00:00Z", "-1")));
    const QByteArray before = readAll(file());
    {
        Store second({dir});
        EXPECT_FALSE(second.writable());
        EXPECT_EQ(second.book(), first->book());
        EXPECT_EQ(second.status(),
                  "Coinhall is already open with this money file, so changes made here are not saved.");
        EXPECT_EQ(second.add(line(second.book().accounts[0], "2025-03-02T09:00:00Z", "-2")).error,
                  "Could not save: another Coinhall has this money file open");
        EXPECT_EQ(second.status(), "Could not save: another Coinhall has this money file open");
        EXPECT_EQ(readAll(file()), before);
    }
    first.reset();
    Store third({dir});
    EXPECT_TRUE(third.writable());
}

namespace {

// Answers as told, from a thread of its own, as a real check would.
class FakeAuthenticator : public Authenticator
{
public:
    bool available = true;
    bool answer = true;
    QString lastSecret;
    bool canEvaluate() const override { return available; }
    void evaluate(const QString &, const QString &secret, std::function<void(bool)> done) override
    {
        lastSecret = secret;
        std::thread([done, ok = answer] { done(ok); }).detach();
    }
};

} // namespace

TEST_F(StoreStart, UnlockIsAskedFromTheNextStartAndFollowsTheAuthenticator)
{
    auto auth = std::make_shared<FakeAuthenticator>();
    Store open({dir, auth});
    EXPECT_FALSE(open.locked()); // the preference is off

    open.setRequireUnlock(true); // takes effect at the next start
    EXPECT_FALSE(open.locked());

    auth->answer = false;
    Store refused({temp.path() + QStringLiteral("/next start"), auth});
    ASSERT_TRUE(refused.locked());
    QSignalSpy failed(&refused, &Store::unlockFailed);
    auth->answer = true;
    refused.unlock(); // never sent: a failed-login counter would count it
    EXPECT_EQ(failed.count(), 1);
    EXPECT_TRUE(refused.locked());

    auth->answer = false;
    refused.unlock(QStringLiteral("wrong"));
    waitFor([&] { return failed.count() > 1; });
    EXPECT_EQ(failed.count(), 2);
    EXPECT_TRUE(refused.locked());
    EXPECT_EQ(auth->lastSecret, "wrong");

    auth->answer = true;
    refused.unlock(QStringLiteral("right"));
    EXPECT_TRUE(waitFor([&] { return !refused.locked(); }));
}

TEST_F(StoreStart, ComputerThatCannotCheckOpensUnlocked)
{
    QSettings(QStringLiteral("QFS"), QStringLiteral("Coinhall")).setValue(QStringLiteral("requireUnlock"), true);
    auto auth = std::make_shared<FakeAuthenticator>();
    auth->available = false;
    Store store({dir, auth});
    EXPECT_TRUE(store.locked());
    store.unlock();
    EXPECT_FALSE(store.locked());
}
