#pragma once

// What the tests of the QML bridges share: a Store of their own on a temporary folder,
// with a still clock and the two accounts of a new Book, and small readers of what the
// bridges hand QML. The figures behind the texts are the core's, tested in tests/core;
// these tests look at what a bridge adds: texts, lists, signals and refusals.
#include "helpers/testing.h"

#include "bridgeinput.h"
#include "store/store.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QVariantList>
#include <QVariantMap>

#include <gtest/gtest.h>

#include <memory>

using BridgeInput::idText;

// The text under `key` in each map of such a list.
inline QStringList column(const QVariantList &list, const char *key)
{
    QStringList texts;
    for (const QVariant &row : list)
        texts << row.toMap().value(key).toString();
    return texts;
}

// A date as the bridges take it from QML: milliseconds since the epoch.
inline double ms(Instant when)
{
    return double(when.msecs());
}

// A Store of its own whose clock stands still on Saturday, March 15, 2025, 10:00 (New York
// time), holding a new Book: `checking` and `savings` are its two accounts.
class BridgeTest : public ::testing::Test
{
protected:
    BridgeTest()
    {
        store->setClock([] { return local(2025, 3, 15, 10); });
    }

    // Books a line into `account` (checking when none is given).
    void line(Instant date, const char *amount, TxKind kind = TxKind::expense, const Account *account = nullptr,
              const char *category = "")
    {
        EXPECT_TRUE(store->add({.date = date,
                                .accountID = (account ? *account : checking).id,
                                .amount = d(amount),
                                .category = category,
                                .kind = kind}));
    }
    Bill bill(const char *name, const char *amount, Instant due, Repeat repeats = Repeat::monthly, bool autopay = false)
    {
        const Bill b{.name = name, .amount = d(amount), .due = due, .repeats = repeats, .autopay = autopay};
        EXPECT_TRUE(store->save(b));
        return b;
    }
    // One received came in as expected.
    Royalty royalty(const char *payer, const char *amount, Instant expected,
                    RoyaltyStatus status = RoyaltyStatus::expected, Repeat repeats = Repeat::once)
    {
        const bool received = status == RoyaltyStatus::received;
        const Royalty r{.payer = payer,
                        .expectedAmount = d(amount),
                        .expectedDate = expected,
                        .status = status,
                        .receivedAmount = received ? std::optional(d(amount)) : std::nullopt,
                        .receivedDate = received ? std::optional(expected) : std::nullopt,
                        .repeats = repeats};
        EXPECT_TRUE(store->save(r));
        return r;
    }

    QTemporaryDir temp;
    std::unique_ptr<Store> store =
        std::make_unique<Store>(StoreOptions{temp.path(), nullptr, std::make_shared<NoNotifier>()});
    Account checking = store->book().accounts.at(0);
    Account savings = store->book().accounts.at(1);
};
