#pragma once

// What the tests of the QML bridges share: a Store of their own on a temporary folder,
// with a still clock and the two accounts of a new Book, and small constructors that
// keep the tests short (d() and at() for an ISO time come with the Store tests').
#include "core/store/storetesting.h"

#include "platform/notifier.h"
#include "store/store.h"

#include <QDateTime>
#include <QTemporaryDir>
#include <QVariantList>
#include <QVariantMap>

#include <gtest/gtest.h>

#include <memory>

// Bill reminders go nowhere in these tests.
class NoNotifier final : public Notifier
{
public:
    void removeAllPending() override {}
    void add(const ReminderRequest &) override {}
    void requestAuthorization() override {}
};

// The map at `i` of a list a bridge hands QML; empty past its end.
inline QVariantMap at(const QVariantList &list, qsizetype i)
{
    return list.value(i).toMap();
}

// A Store of its own whose clock stands still at `now`, holding a new Book: `checking`
// and `savings` are its two accounts.
class BridgeTest : public ::testing::Test
{
protected:
    explicit BridgeTest(Instant now)
    {
        store = std::make_unique<Store>(StoreOptions{temp.path(), nullptr, std::make_shared<NoNotifier>()});
        store->setClock([now] { return now; });
        checking = store->book().accounts.at(0);
        savings = store->book().accounts.at(1);
    }

    void SetUp() override { ASSERT_TRUE(temp.isValid()); }

    QTemporaryDir temp;
    std::unique_ptr<Store> store;
    Account checking;
    Account savings;
};
