// Ledger operations of the Store: transactions, transfers, balances, accounts.
#include "store/store.h"

#include <algorithm>

namespace {

bool newerFirst(const Transaction &a, const Transaction &b)
{
    return a.date > b.date;
}

// Restores newest-first order after `appended` lines were added at the end.
//
// The result is always that of a stable sort by date, descending. When the lines
// before the new ones are already in order (the usual case), the new lines are
// sorted among themselves and merged in: a stable merge keeps an old line ahead of a
// new one with the same date, which is where a stable sort of the whole list puts it.
void restoreOrder(std::vector<Transaction> &lines, size_t appended)
{
    appended = std::min(appended, lines.size());
    const auto oldEnd = lines.end() - std::ptrdiff_t(appended);
    if (!std::is_sorted(lines.begin(), oldEnd, newerFirst)) {
        std::stable_sort(lines.begin(), lines.end(), newerFirst);
        return;
    }
    std::stable_sort(oldEnd, lines.end(), newerFirst);
    std::inplace_merge(lines.begin(), oldEnd, lines.end(), newerFirst);
}

} // namespace

void Store::add(const Transaction &tx)
{
    OneWrite once(*this);
    m_book.transactions.push_back(tx);
    assigned();
    sortNewestFirst(1);
    assigned();
}

void Store::update(const Transaction &tx)
{
    auto &lines = m_book.transactions;
    const auto found = std::find_if(lines.begin(), lines.end(), [&](const Transaction &t) { return t.id == tx.id; });
    if (found == lines.end())
        return;
    *found = tx;
    assigned();
}

void Store::deleteTransaction(const Transaction &tx)
{
    // Copies: `tx` may be one of the lines being removed.
    const QUuid id = tx.id;
    const std::optional<QUuid> pair = tx.transferPairID;
    std::erase_if(m_book.transactions, [&](const Transaction &t) { return t.id == id || (pair && t.id == *pair); });
    assigned();
}

void Store::transfer(const QUuid &from, const QUuid &to, const Decimal &amount, Instant date, const QString &note)
{
    const Decimal m = amount.magnitude();
    auto nameOf = [this](const QUuid &id) {
        const auto found = account(id);
        return found ? found->name : QString();
    };

    Transaction sending;
    sending.date = date;
    sending.accountID = from;
    sending.amount = m.negated();
    sending.payee = QStringLiteral("Transfer to ") + nameOf(to);
    sending.category = QStringLiteral("Transfer");
    sending.note = note;
    sending.cleared = true;
    sending.kind = TxKind::transfer;

    Transaction receiving = sending;
    receiving.id = newId();
    receiving.accountID = to;
    receiving.amount = m;
    receiving.payee = QStringLiteral("Transfer from ") + nameOf(from);

    // Each side points at the other; there is no shared pair id.
    receiving.transferPairID = sending.id;
    sending.transferPairID = receiving.id;

    OneWrite once(*this);
    m_book.transactions.push_back(std::move(sending));
    m_book.transactions.push_back(std::move(receiving));
    assigned();
    sortNewestFirst(2);
    assigned();
}

void Store::sortNewestFirst(size_t appended)
{
    restoreOrder(m_book.transactions, appended);
}

Decimal Store::balance(const Account &account, Instant upTo) const
{
    Decimal sum = account.opening;
    for (const Transaction &t : m_book.transactions)
        if (t.accountID == account.id && t.date <= upTo)
            sum += t.amount;
    return sum;
}

std::vector<Account> Store::activeAccounts() const
{
    std::vector<Account> active;
    std::copy_if(m_book.accounts.begin(), m_book.accounts.end(), std::back_inserter(active),
                 [](const Account &a) { return !a.archived; });
    return active;
}

Decimal Store::totalBalance() const
{
    // One pass over the lines, however many accounts there are.
    const std::vector<Account> active = activeAccounts();
    Decimal total;
    for (const Account &a : active)
        total += a.opening;
    for (const Transaction &t : m_book.transactions)
        if (std::any_of(active.begin(), active.end(), [&](const Account &a) { return a.id == t.accountID; }))
            total += t.amount;
    return total;
}

std::optional<Account> Store::account(const std::optional<QUuid> &id) const
{
    if (!id)
        return std::nullopt;
    for (const Account &a : m_book.accounts)
        if (a.id == *id)
            return a;
    return std::nullopt;
}

void Store::save(const Account &account)
{
    auto &accounts = m_book.accounts;
    const auto found =
        std::find_if(accounts.begin(), accounts.end(), [&](const Account &a) { return a.id == account.id; });
    if (found != accounts.end())
        *found = account;
    else
        accounts.push_back(account);
    assigned();
}

bool Store::hasTransactions(const Account &account) const
{
    return std::any_of(m_book.transactions.begin(), m_book.transactions.end(),
                       [&](const Transaction &t) { return t.accountID == account.id; });
}

void Store::deleteAccount(const Account &account)
{
    if (hasTransactions(account))
        return;
    const QUuid id = account.id; // `account` may be the very record removed
    std::erase_if(m_book.accounts, [&](const Account &a) { return a.id == id; });
    assigned();
}

QStringList Store::categories(bool income) const
{
    QStringList names;
    for (const Category &c : m_book.categories)
        if (c.income == income && c.name != QLatin1String("Transfer"))
            names.append(c.name);
    return names;
}
