#pragma once

#include "helpers/testing.h"
#include "model/moneyfile.h"
#include "store/store.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <string>
#include <vector>

inline Transaction line(const Account &account, const char *iso, const char *amount, const char *payee = "Payee",
                        TxKind kind = TxKind::expense)
{
    Transaction t;
    t.date = at(iso);
    t.accountID = account.id;
    t.amount = d(amount);
    t.payee = QString::fromUtf8(payee);
    t.category = QStringLiteral("Groceries");
    t.kind = kind;
    return t;
}

inline Book decodeFile(const QString &path)
{
    const QByteArray bytes = readAll(path);
    MoneyFile::Decoded decoded = MoneyFile::decode(std::string_view(bytes.constData(), size_t(bytes.size())));
    EXPECT_TRUE(decoded.book.has_value()) << decoded.error.toStdString();
    return decoded.book.value_or(Book{});
}

// A Store on a folder of its own whose clock reads `today`, with its two starting
// accounts at hand and its bookChanged signals counted.
class StoreTest : public ::testing::Test
{
protected:
    explicit StoreTest(Instant now = Instant::now())
        : today(now)
    {
        store.setClock([this] { return today; });
        QObject::connect(&store, &Store::bookChanged, [this] { ++changes; });
    }

    Book onDisk() const { return decodeFile(temp.path() + QStringLiteral("/coinhall.json")); }
    std::vector<QString> payees() const
    {
        std::vector<QString> out;
        for (const Transaction &t : store.book().transactions)
            out.push_back(t.payee);
        return out;
    }

    Instant today;
    QTemporaryDir temp;
    Store store{{temp.path()}};
    Account checking = store.book().accounts[0];
    Account savings = store.book().accounts[1];
    int changes = 0; // bookChanged signals so far
};
