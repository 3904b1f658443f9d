#pragma once

#include "model/decimal.h"
#include "model/instant.h"

#include <QString>
#include <QUuid>

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

// The user's records. Plain values: screens copy one out, change it and hand it
// back to a Store operation. The enumerations the user sees are stored in the
// money file by their display text, so those texts are a file format.

// A new random identity.
QUuid newId();

template <typename E> struct EnumTexts; // table of (case, stored text) in the order pickers show them

// The stored (and shown) text of a case.
template <typename E> QString rawValue(E value)
{
    for (const auto &[c, text] : EnumTexts<E>::table)
        if (c == value)
            return QString::fromUtf8(text);
    return {};
}

// The case whose stored text is exactly `text`, or nothing.
template <typename E> std::optional<E> fromRawValue(std::string_view text)
{
    for (const auto &[c, t] : EnumTexts<E>::table)
        if (text == t)
            return c;
    return std::nullopt;
}

template <typename E> std::optional<E> fromRawValue(const QString &text)
{
    const QByteArray utf8 = text.toUtf8();
    return fromRawValue<E>(std::string_view(utf8.constData(), size_t(utf8.size())));
}

// Every case, in picker order.
template <typename E> std::vector<E> allCases()
{
    std::vector<E> cases;
    for (const auto &entry : EnumTexts<E>::table)
        cases.push_back(entry.first);
    return cases;
}

enum class AccountKind { checking, savings, credit, cash, business, payment, other };
template <> struct EnumTexts<AccountKind>
{
    static constexpr std::array<std::pair<AccountKind, const char *>, 7> table{{
        {AccountKind::checking, "Checking"},
        {AccountKind::savings, "Savings"},
        {AccountKind::credit, "Credit card"},
        {AccountKind::cash, "Cash"},
        {AccountKind::business, "Business"},
        {AccountKind::payment, "PayPal / Cash App / Venmo"},
        {AccountKind::other, "Other"},
    }};
};
// The symbol name shown beside an account of this kind ("building.columns").
QString iconName(AccountKind kind);

// One byte: it sits beside `cleared` in every one of a Book's lines.
enum class TxKind : std::uint8_t { deposit, expense, transfer, royalty, bill };
template <> struct EnumTexts<TxKind>
{
    static constexpr std::array<std::pair<TxKind, const char *>, 5> table{{
        {TxKind::deposit, "deposit"},
        {TxKind::expense, "expense"},
        {TxKind::transfer, "transfer"},
        {TxKind::royalty, "royalty"},
        {TxKind::bill, "bill"},
    }};
};

// How often a bill or royalty comes around. Only a bill comes on set dates: the month
// and day pairs of its `yearDates`.
enum class Repeat { once, weekly, biweekly, monthly, quarterly, yearly, setDates };
template <> struct EnumTexts<Repeat>
{
    static constexpr std::array<std::pair<Repeat, const char *>, 7> table{{
        {Repeat::once, "One time"},
        {Repeat::weekly, "Weekly"},
        {Repeat::biweekly, "Every 2 weeks"},
        {Repeat::monthly, "Monthly"},
        {Repeat::quarterly, "Every 3 months"},
        {Repeat::yearly, "Yearly"},
        {Repeat::setDates, "On set dates each year"},
    }};
};

// A day of every year, such as April 15: a day past a month's end (February 30) is
// that month's last day.
struct MonthDay
{
    int month = 1; // 1 to 12
    int day = 1;   // 1 to 31
    friend auto operator<=>(const MonthDay &, const MonthDay &) = default;
};

enum class RoyaltySource { distributor, pro, mechanical, publisher, sync, label, neighboring, sales, software, other };
template <> struct EnumTexts<RoyaltySource>
{
    static constexpr std::array<std::pair<RoyaltySource, const char *>, 10> table{{
        {RoyaltySource::distributor, "Streaming / distributor"},
        {RoyaltySource::pro, "Performance (PRO)"},
        {RoyaltySource::mechanical, "Mechanical"},
        {RoyaltySource::publisher, "Publishing"},
        {RoyaltySource::sync, "Sync / licensing"},
        {RoyaltySource::label, "Label"},
        {RoyaltySource::neighboring, "Neighboring rights"},
        {RoyaltySource::sales, "Sales / downloads"},
        {RoyaltySource::software, "Software sales"},
        {RoyaltySource::other, "Other"},
    }};
};

enum class RoyaltyStatus { expected, received, disputed };
template <> struct EnumTexts<RoyaltyStatus>
{
    static constexpr std::array<std::pair<RoyaltyStatus, const char *>, 3> table{{
        {RoyaltyStatus::expected, "Expected"},
        {RoyaltyStatus::received, "Received"},
        {RoyaltyStatus::disputed, "Following up"},
    }};
};

// A place money is kept: a bank account, a card, a wallet.
struct Account
{
    QUuid id = newId();
    QString name;
    AccountKind kind = AccountKind::checking;
    Decimal opening;       // balance before the first transaction
    bool archived = false; // closed: out of the active lists and the total, its lines kept
    friend bool operator==(const Account &, const Account &) = default;
};

// One line of the ledger. Money into the account is positive, money out negative.
struct Transaction
{
    QUuid id = newId();
    Instant date;
    QUuid accountID;
    Decimal amount;
    QString payee;
    QString category; // a category's name, not a reference
    QString note;
    bool cleared = false;
    TxKind kind = TxKind::expense;
    std::optional<QUuid> transferPairID; // the other side of a transfer; absent otherwise
    std::optional<QString> importHash;   // fingerprint of the bank line it came from
    friend bool operator==(const Transaction &, const Transaction &) = default;
};
// Every member may be moved as bytes (Qt's strings are relocatable), which is how a
// new line is shifted into its place among a million others (ledger.cpp).
Q_DECLARE_TYPEINFO(Transaction, Q_RELOCATABLE_TYPE);
// A big Book holds a million of these; a member added or reordered carelessly shows here.
static_assert(sizeof(Transaction) <= 192);

// A name transactions are filed under, with an optional monthly budget.
struct Category
{
    QString name;
    bool income = false;
    std::optional<Decimal> budget; // absent: no budget
    // Whether its income counts toward the money set aside for taxes; absent: the
    // usual choice, countsForSetAside()'s.
    std::optional<bool> setAside;
    friend bool operator==(const Category &, const Category &) = default;

    // Whether lines in it count toward the set-aside: its own choice, else every income
    // category but "Refunds" (money that was already ours) and "Transfer".
    bool countsForSetAside() const;
    // The usual choice for a category of this name and side.
    static bool countsByDefault(const QString &name, bool income);

    // The 26 categories of a new Book: 8 income, then 18 spending ending with "Transfer".
    static std::vector<Category> defaults();
};

// Money owed again and again, or once.
struct Bill
{
    // One payment made, oldest first in the bill's history.
    struct Payment
    {
        Instant date;    // when the money went out
        Decimal amount;  // as paid, positive
        Instant dueDate; // the due date this payment settled
        friend bool operator==(const Payment &, const Payment &) = default;
    };

    QUuid id = newId();
    QString name;
    Decimal amount; // usual amount, positive
    Instant due;    // next due date
    Repeat repeats = Repeat::monthly;
    // With Repeat::setDates: one to twelve days of the year, in calendar order, each
    // once; empty otherwise.
    std::vector<MonthDay> yearDates;
    std::optional<QUuid> accountID; // usually paid from
    QString category = QStringLiteral("Bills & Utilities");
    bool autopay = false;
    int remindDays = 3;
    QString website;
    QString note;
    bool active = true; // false once a one-time bill is finished
    std::vector<Payment> history;
    friend bool operator==(const Bill &, const Bill &) = default;
};

// Money expected from a payer for a piece of work over a statement period.
struct Royalty
{
    QUuid id = newId();
    QString payer;
    RoyaltySource source = RoyaltySource::distributor;
    QString work;
    QString period;
    Decimal expectedAmount;
    Instant expectedDate;
    RoyaltyStatus status = RoyaltyStatus::expected;
    std::optional<Decimal> receivedAmount;
    std::optional<Instant> receivedDate;
    std::optional<QUuid> accountID;
    QString note;
    Repeat repeats = Repeat::once;
    friend bool operator==(const Royalty &, const Royalty &) = default;
};

// All of the user's data: the whole money file as one value.
struct Book
{
    int version = 2; // as a new Book is written (MoneyFile::version); a file read keeps its own
    std::vector<Account> accounts;
    std::vector<Transaction> transactions; // newest first
    std::vector<Bill> bills;
    std::vector<Royalty> royalties;
    std::vector<Category> categories = Category::defaults();
    QString currency = QStringLiteral("USD");
    // The percent of counted income to set aside for taxes, above 0 and at most 100;
    // absent: nothing is set aside.
    std::optional<Decimal> setAsidePercent;
    friend bool operator==(const Book &, const Book &) = default;
};
