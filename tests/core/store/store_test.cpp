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
    const std::vector<Account> &accounts = store.book().accounts;
    ASSERT_EQ(accounts.size(), 2u);
    EXPECT_EQ(std::tuple(accounts[0].name, accounts[0].kind, accounts[1].name, accounts[1].kind),
              std::tuple("Main checking", AccountKind::checking, "Savings", AccountKind::savings));
    EXPECT_EQ(store.book().categories, Category::defaults());
    EXPECT_EQ(std::tuple(store.status(), store.writable(), store.locked()), std::tuple("", true, false));
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
        EXPECT_EQ(std::tuple(store.book(), store.loadError()), std::tuple(saved, ""));
        EXPECT_TRUE(store.add(line(store.book().accounts[0], "2025-03-04T09:00:00Z", "-12.5")));
    }
    EXPECT_EQ(readAll(backup()), MoneyFile::encode(saved));

    // The day's second start keeps the backup of the file as it was before the day's changes.
    Store again({dir});
    EXPECT_EQ(again.book().transactions.size(), 1u);
    EXPECT_EQ(QDir(path("Backups")).entryList(QDir::Files), QStringList{backupName()});
    EXPECT_EQ(readAll(backup()), MoneyFile::encode(saved));
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
    EXPECT_EQ(std::tuple(store.dir(), store.book()), std::tuple(dir, saved));
    EXPECT_TRUE(QFile::exists(path("Backups/coinhall-2024-01-01.json")));
    EXPECT_TRUE(QFile::exists(older + QStringLiteral("/coinhall.json"))); // the older folder is left as it was
}

TEST_F(StoreStart, AMoneyFileFromANewerCoinhallIsReadButNeverRewritten)
{
    Book newer = studioBook();
    newer.version = MoneyFile::version + 1;
    // A newer Coinhall may keep what this one does not know; a save from here would drop it.
    const QByteArray bytes =
        MoneyFile::encode(newer).replace("\"version\": 3", "\"version\": 3, \"wishes\": [\"boat\"]");
    ASSERT_TRUE(bytes.contains("wishes"));
    put("coinhall.json", bytes);

    Store store({dir});
    EXPECT_EQ(std::tuple(store.book(), store.writable()), std::tuple(newer, false));
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
        EXPECT_EQ(std::tuple(second.book(), second.writable()), std::tuple(first->book(), false));
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

TEST_F(StoreStart, UnlockIsAskedFromTheNextStartAndFollowsTheAuthenticatorWhereThereIsOne)
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
    EXPECT_EQ(std::tuple(failed.count(), refused.locked()), std::tuple(1, true));

    auth->answer = false;
    refused.unlock(QStringLiteral("wrong"));
    waitFor([&] { return failed.count() > 1; });
    EXPECT_EQ(std::tuple(failed.count(), refused.locked(), auth->lastSecret), std::tuple(2, true, "wrong"));

    auth->answer = true;
    refused.unlock(QStringLiteral("right"));
    EXPECT_TRUE(waitFor([&] { return !refused.locked(); }));

    // A computer that cannot check a password opens at the first unlock asked for.
    auth->available = false;
    Store cannotCheck({temp.path() + QStringLiteral("/cannot check"), auth});
    ASSERT_TRUE(cannotCheck.locked());
    cannotCheck.unlock();
    EXPECT_FALSE(cannotCheck.locked());
}
