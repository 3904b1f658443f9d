#pragma once

#include "helpers/testing.h"
#include "model/moneyfile.h"
#include "store/store.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <string>

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
