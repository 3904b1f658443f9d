#pragma once

#include "model/moneyfile.h"
#include "store/store.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <string>

// Small constructors that keep the Store tests short.
inline Decimal d(const char *text)
{
    return *Decimal::fromString(std::string_view(text));
}

inline Instant at(const char *iso)
{
    return *Instant::fromIso(iso);
}

inline Transaction line(const Account &account, const char *iso, const char *amount, const char *payee = "Payee")
{
    Transaction t;
    t.date = at(iso);
    t.accountID = account.id;
    t.amount = d(amount);
    t.payee = QString::fromUtf8(payee);
    t.category = QStringLiteral("Groceries");
    return t;
}

inline QByteArray readAll(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

inline void writeAll(const QString &path, const QByteArray &bytes)
{
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write(bytes);
}

inline Book decodeFile(const QString &path)
{
    const QByteArray bytes = readAll(path);
    MoneyFile::Decoded decoded = MoneyFile::decode(std::string_view(bytes.constData(), size_t(bytes.size())));
    EXPECT_TRUE(decoded.book.has_value()) << decoded.error.toStdString();
    return decoded.book.value_or(Book{});
}
